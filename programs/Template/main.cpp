#include "TemplatePresenter.h"

#include <KesProgram/shell/ProgramMain.h>
#include <KesProgram/text/TextPair.h>

int main(int argc, char** argv)
{
    const auto summary = [] {
        return std::string(
            lng::choose({"The smallest program of the family.", "Самая маленькая программа семейства."}));
    };
    return KesProgram::ProgramMain::run(argc, argv, summary, KES_VERSION, [](const KesProgram::CommandLine&) {
        KesProgram::ProgramMain::Parts parts;
        auto model = std::make_unique<TemplateModel>();
        parts.presenter = std::make_unique<TemplatePresenter>(*model);
        parts.model = std::move(model);
        return parts;
    });
}
