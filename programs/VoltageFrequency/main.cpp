#include <VoltageFrequency/model/VoltageFrequencyModel.h>
#include <VoltageFrequency/text/VoltageFrequencyText.h>

#include <KesProgram/shell/ProgramMain.h>
#include <KesTestProgram/TestPresenter.h>

namespace {

KesProgram::ProgramMain::Parts create(const KesProgram::CommandLine& commandLine)
{
    auto model = std::make_unique<VoltageFrequency::VoltageFrequencyModel>();
    model->setSpeed(commandLine.speed);
    KesProgram::ProgramMain::Parts parts;
    parts.writeReport = [&model = *model](const std::string& path) { return model.writeReport(path); };
    parts.presenter = std::make_unique<KesTestProgram::TestPresenter>(*model);
    parts.model = std::move(model);
    return parts;
}

} // namespace

int main(int argc, char** argv)
{
    return KesProgram::ProgramMain::run(
        argc, argv, [] { return std::string(lng::VoltageFrequency::get("Program.summary")); }, KES_VERSION,
        create);
}
