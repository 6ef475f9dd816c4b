// The plan of a test (plan.xml).

#include "XmlPart.h"

#include <Overcurrent/data/PlanXml.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using Overcurrent::TestPlan;
    namespace PlanXml = Overcurrent::PlanXml;
    checkXmlPart<TestPlan>(
        bytes, size, "plan",
        [](const xmlpp::Element& element, auto form) { return PlanXml::read(element, form); },
        [](xmlpp::Element& element, const TestPlan& plan) { PlanXml::write(element, plan); });
    return 0;
}
