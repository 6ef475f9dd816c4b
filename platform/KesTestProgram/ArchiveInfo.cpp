#include <KesTestProgram/ArchiveInfo.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace KesTestProgram::ArchiveInfo {

namespace {

constexpr const char* rootName = "info";

} // namespace

std::string write(const std::string& program, const std::string& form, const KesMeasure::MeasuredTest* test,
                  const std::string& results)
{
    return KesMeasure::writeXml(rootName, [&](xmlpp::Element& root) {
        KesMeasure::setAttribute(root, "program", program);
        KesMeasure::setAttribute(root, "format", form);
        if (test)
            test->writeCircumstances(*root.add_child("test"), results);
    });
}

std::optional<std::string> readForm(const std::string& text, const std::string& program)
{
    std::string form;
    const bool isRead = KesMeasure::readXml(text, rootName, [&](const xmlpp::Element& root) {
        KesMeasure::XmlAttributes attributes(root);
        form = attributes.text("format");
        return attributes.text("program") == program && attributes.isGood();
    });
    return isRead ? std::optional(form) : std::nullopt;
}

bool readTest(const std::string& text, KesMeasure::MeasuredTest* test, const std::string& results)
{
    return KesMeasure::readXml(text, rootName, [&](const xmlpp::Element& root) {
        const auto* element = dynamic_cast<const xmlpp::Element*>(root.get_first_child("test"));
        return element && test ? test->readCircumstances(*element, results) : !element && !test;
    });
}

} // namespace KesTestProgram::ArchiveInfo
