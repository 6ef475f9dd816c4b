#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <VoltageFrequency/model/VoltageFrequencyTest.h>
#include <VoltageFrequency/text/VoltageFrequencyText.h>

namespace VoltageFrequency {

VoltageFrequencyModel::VoltageFrequencyModel() : TestModel(kind()) {}

KesTestProgram::TestKind VoltageFrequencyModel::kind()
{
    KesTestProgram::TestKind kind;
    kind.name = "VoltageFrequency";
    kind.program = "kes-voltage-frequency";
    kind.extension = "kvf";
    kind.reportTitle = lng::VoltageFrequency::get("Report.title");
    kind.makeTestObject = makeTestObject;
    kind.makeTest = [](const KesTree::Node& testObject) {
        return std::make_shared<VoltageFrequencyTest>(Settings::fromNode(testObject));
    };
    return kind;
}

} // namespace VoltageFrequency
