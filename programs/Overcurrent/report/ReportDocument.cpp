#include <Overcurrent/report/ReportDocument.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/data/ResultsXml.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/data/TestChart.h>
#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesMeasure/ReportXml.h>
#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace Overcurrent {

std::string ReportDocument::create(const RelaySettings& settings, const TestPlan& plan,
                                   const TestResults* results, bool areResultsLost,
                                   const std::vector<KesMeasure::TextLine>& nameplate)
{
    using namespace KesMeasure;
    return writeXml("report", [&](xmlpp::Element& root) {
        const auto verdict = results ? Evaluation::verdict(*results) : Verdict::None;
        ReportXml::addHead(root, verdict, TestOutcome::create(results, areResultsLost), results,
                           ResultsXml::toText(results));
        using lng::Overcurrent::get;
        ReportXml::addLines(root, "captions",
                            {{"results", get("Report.results")},
                             {"values", get("Report.values")},
                             {"chart", get("Report.chart")},
                             {"legendUnmeasured", get("Report.unmeasured")}});
        root.set_attribute("subtitle", get("Report.title"));
        ReportXml::addLines(root, "nameplate", nameplate);
        ReportXml::addLines(root, "settings", SettingsSummary::describe(settings));
        ReportXml::addLines(root, "plan", SettingsSummary::describe(plan, settings));
        ReportXml::addResults(root, results ? ResultTexts::createTable(*results) : ResultTable());
        ReportXml::addChart(root, TestChart::create(settings, plan, results));
    });
}

} // namespace Overcurrent
