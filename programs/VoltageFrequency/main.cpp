#include <VoltageFrequency/model/VoltageFrequencyModel.h>
#include <VoltageFrequency/text/VoltageFrequencyText.h>

#include <KesTestProgram/TestProgramParts.h>

int main(int argc, char** argv)
{
    return KesProgram::ProgramMain::run(
        argc, argv, [] { return std::string(lng::VoltageFrequency::get("Program.summary")); }, KES_VERSION,
        KesTestProgram::createTestProgram<VoltageFrequency::VoltageFrequencyModel>);
}
