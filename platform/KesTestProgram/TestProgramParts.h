#pragma once

#include <KesProgram/shell/ProgramMain.h>
#include <KesTestProgram/TestPresenter.h>

#include <memory>
#include <string>
#include <utility>

namespace KesTestProgram {

/// Model and presenter of a test program, for `KesProgram::ProgramMain::run`, which gets this function as its
/// last argument. GUI thread.
///
/// `Model` is derived from `TestProgramModel` and made without arguments; `Presenter` is made with the model.
///
/// "--speed" applies to the simulated bench alone. "--report" writes what the Report button would, under the
/// name that is given and without a question.
template <typename Model, typename Presenter = TestPresenter>
KesProgram::ProgramMain::Parts createTestProgram(const KesProgram::CommandLine& commandLine)
{
    auto model = std::make_unique<Model>();
    model->setSpeed(commandLine.speed);
    KesProgram::ProgramMain::Parts parts;
    parts.writeReport = [&model = *model](const std::string& path) { return model.writeReport(path); };
    parts.presenter = std::make_unique<Presenter>(*model);
    parts.model = std::move(model);
    return parts;
}

} // namespace KesTestProgram
