#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/presenter/OvercurrentPresenter.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesTestProgram/TestProgramParts.h>

int main(int argc, char** argv)
{
    return KesProgram::ProgramMain::run(
        argc, argv, [] { return std::string(lng::Overcurrent::get("Program.summary")); }, KES_VERSION,
        KesTestProgram::createTestProgram<Overcurrent::OvercurrentModel, Overcurrent::OvercurrentPresenter>);
}
