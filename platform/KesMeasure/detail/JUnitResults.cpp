// The XML of JUnit as job engines read it: a test case for each result, and one for the test as a whole.

#include <KesMeasure/detail/ResultFormats.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace KesMeasure::ResultFormats {

namespace {

struct Counts {
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;
};

class JUnitWriter {
public:
    JUnitWriter(xmlpp::Element& suite, const TestSummary& summary) : _suite(suite), _summary(summary) {}

    Counts write()
    {
        _writeProperties();
        const auto& table = _summary.table;
        for (const auto& row : table.rows)
            _addResult(row.id, row.mark, _describe(row));
        for (const auto& value : table.values)
            _addResult(value.id, value.mark,
                       toValidText(value.name + ": " + value.value + " " + value.verdict));
        _addTest();
        return _counts;
    }

private:
    void _writeProperties()
    {
        auto& properties = *_suite.add_child("properties");
        const auto add = [&properties](const std::string& name, const std::string& value) {
            auto& property = *properties.add_child("property");
            property.set_attribute("name", name);
            property.set_attribute("value", value);
        };
        for (const auto& [name, text] : listCircumstances(_summary))
            add(name, text);
        for (const auto& remark : _summary.nameplate)
            add("nameplate." + remark.id, toValidText(remark.text));
    }

    /// What the row shows, with the names of its columns.
    std::string _describe(const ResultTable::Row& row) const
    {
        const auto& columns = _summary.table.columns;
        std::string text;
        for (std::size_t i = 0; i < columns.size() && i < row.cells.size(); ++i)
            if (!row.cells[i].empty())
                text += (text.empty() ? "" : "; ") + columns[i].title + ": " + row.cells[i];
        return toValidText(text);
    }

    xmlpp::Element& _addCase(const std::string& name)
    {
        auto& element = *_suite.add_child("testcase");
        element.set_attribute("classname", _summary.program);
        element.set_attribute("name", name);
        ++_counts.tests;
        return element;
    }

    void _addProblem(xmlpp::Element& element, const char* kind, const std::string& text, std::size_t& count)
    {
        element.add_child(kind)->set_attribute("message", text);
        ++count;
    }

    void _addResult(const std::string& name, Mark mark, const std::string& text)
    {
        auto& element = _addCase(toValidText(name));
        if (mark == Mark::Failed)
            _addProblem(element, "failure", text, _counts.failures);
        else if (mark == Mark::None)
            _addProblem(element, "skipped", text, _counts.skipped);
    }

    /// A test that was stopped when all was well so far is not a good one, nor is one whose file has been
    /// changed.
    void _addTest()
    {
        auto& element = _addCase("test");
        const auto text = toValidText(_summary.outcome);
        const bool isChanged = _summary.circumstances && _summary.circumstances->isChangedByHand();
        if (_summary.verdict == Verdict::None)
            _addProblem(element, "skipped", text, _counts.skipped);
        else if (_summary.verdict == Verdict::Failed)
            _addProblem(element, "failure", text, _counts.failures);
        else if (_summary.verdict != Verdict::Passed || isChanged)
            _addProblem(element, "error", text, _counts.errors);
    }

    xmlpp::Element& _suite;
    const TestSummary& _summary;
    Counts _counts;
};

/// "2024-03-01 14:05:09" as ISO 8601 has it.
std::string timestampOf(std::string startedAt)
{
    const auto gap = startedAt.find(' ');
    if (gap != std::string::npos)
        startedAt[gap] = 'T';
    return startedAt;
}

} // namespace

std::string toJUnit(const TestSummary& summary)
{
    return writeXml("testsuites", [&summary](xmlpp::Element& root) {
        auto& suite = *root.add_child("testsuite");
        suite.set_attribute("name", summary.program);
        if (summary.circumstances && !summary.circumstances->startedAt.empty())
            suite.set_attribute("timestamp", timestampOf(toValidText(summary.circumstances->startedAt)));
        const auto counts = JUnitWriter(suite, summary).write();
        for (const auto& [name, count] : {std::pair("tests", counts.tests),
                                          {"failures", counts.failures},
                                          {"errors", counts.errors},
                                          {"skipped", counts.skipped}})
            suite.set_attribute(name, std::to_string(count));
    });
}

} // namespace KesMeasure::ResultFormats
