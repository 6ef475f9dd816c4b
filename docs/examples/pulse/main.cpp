#include "PulsePresenter.h"

#include <KesCommon/Text.h>
#include <KesProgram/shell/ProgramMain.h>

//! [main]
int main(int argc, char** argv)
{
    const auto summary = [] {
        return std::string(lng::Text("Pulse.summary", "Measures how long contact 1 takes to close.",
                                     "Измеряет время замыкания контакта 1.")
                               .get());
    };
    const auto create = [](const KesProgram::CommandLine& commandLine) {
        KesProgram::ProgramMain::Parts parts;
        auto model = std::make_unique<PulseModel>();
        model->setSpeed(commandLine.speed);
        parts.presenter = std::make_unique<PulsePresenter>(*model);
        parts.model = std::move(model);
        return parts;
    };
    return KesProgram::ProgramMain::run(argc, argv, summary, KES_VERSION, create,
                                        {.hasReport = false, .hasResults = false});
}
//! [main]
