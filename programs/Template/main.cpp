#include "TemplatePresenter.h"

#include <KesCommon/Text.h>
#include <KesProgram/shell/ProgramMain.h>

int main(int argc, char** argv)
{
    const auto summary = [] {
        return std::string(lng::Text("Template.summary", "The smallest program of the family.",
                                     "Самая маленькая программа семейства.")
                               .get());
    };
    const auto create = [](const KesProgram::CommandLine&) {
        KesProgram::ProgramMain::Parts parts;
        auto model = std::make_unique<TemplateModel>();
        parts.presenter = std::make_unique<TemplatePresenter>(*model);
        parts.model = std::move(model);
        return parts;
    };
    // What the help does not offer, as the model cannot do it.
    return KesProgram::ProgramMain::run(argc, argv, summary, KES_VERSION, create,
                                        {.hasArchive = false, .hasReport = false, .hasResults = false});
}
