#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/presenter/OvercurrentPresenter.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesProgram/shell/ProgramMain.h>

namespace {

KesProgram::ProgramMain::Parts create(const KesProgram::CommandLine& commandLine)
{
    auto model = std::make_unique<Overcurrent::OvercurrentModel>();
    model->setSpeed(commandLine.speed);
    KesProgram::ProgramMain::Parts parts;
    parts.writeReport = [&model = *model](const std::string& path) { return model.writeReport(path); };
    parts.presenter = std::make_unique<Overcurrent::OvercurrentPresenter>(*model);
    parts.model = std::move(model);
    return parts;
}

} // namespace

int main(int argc, char** argv)
{
    return KesProgram::ProgramMain::run(
        argc, argv, [] { return std::string(lng::Overcurrent::get("Program.summary")); }, KES_VERSION,
        create);
}
