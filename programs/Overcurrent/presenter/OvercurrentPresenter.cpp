#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <Overcurrent/text/OvercurrentText.h>
#include <Overcurrent/view/FileMenuTailView.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesMeasureView/WindowOpening.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/shell/FileMenuPresenter.h>
#include <KesProgram/shell/FileRecentMenuPresenter.h>
#include <KesProgram/shell/FileToolbarPresenter.h>
#include <KesProgram/shell/HardwareControlToolbarPresenter.h>
#include <KesProgram/shell/HardwareSettingsToolbarPresenter.h>
#include <KesProgram/shell/HelpMenuPresenter.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>
#include <KesProgram/shell/ToolsToolbarPresenter.h>
#include <KesProgram/views/IProgramView.h>

namespace Overcurrent {

struct OvercurrentPresenter::Menus {
    Menus(OvercurrentPresenter& shell, OvercurrentModel& model)
        : file(&shell),
          recent(&shell),
          fileTail(*file.getView(), *recent.getView()),
          help(&shell, model),
          fileTools(&shell),
          control(model),
          settings(&shell),
          tools(&shell, true)
    {}

    KesProgram::FileMenuPresenter file;
    KesProgram::FileRecentMenuPresenter recent;
    FileMenuTailView fileTail;
    KesProgram::HelpMenuPresenter help;
    KesProgram::FileToolbarPresenter fileTools;
    KesProgram::HardwareControlToolbarPresenter control;
    KesProgram::HardwareSettingsToolbarPresenter settings;
    KesProgram::ToolsToolbarPresenter tools;
};

OvercurrentPresenter::OvercurrentPresenter(OvercurrentModel& model) : _model(model)
{
    _model.confirmReplacing = [this] { return _ask(lng::Overcurrent::get("Run.replaceUnsaved")); };
}

OvercurrentPresenter::~OvercurrentPresenter()
{
    _model.confirmReplacing = nullptr;
}

void OvercurrentPresenter::openFile(const std::string& fileName)
{
    runDialogs([&] {
        auto& archive = *getArchiveManagerPresenter();
        if (_model.isUntouched())
            archive.replace(fileName);
        else
            archive.open(fileName);
    });
}

void OvercurrentPresenter::saveArchive()
{
    if (_confirmSavedPlan())
        ProgramBasePresenter::saveArchive();
}

void OvercurrentPresenter::saveAsArchive()
{
    if (_confirmSavedPlan())
        ProgramBasePresenter::saveAsArchive();
}

/// What is saved is not what the window shows while that is no plan.
bool OvercurrentPresenter::_confirmSavedPlan()
{
    const std::string& error = _model.getPlanError();
    return error.empty() ||
           _ask(Kes::StringHelper::format(lng::Overcurrent::get("Plan.saveLastValid"), error));
}

bool OvercurrentPresenter::_ask(const std::string& question)
{
    return Kes::DialogPresenter::show(getView(), question, "", Kes::DialogResult::YesNo) ==
           Kes::DialogResult::Yes;
}

void OvercurrentPresenter::_onInit()
{
    _createMenus();
    KesMeasure::WindowOpening::setDefaultSize(*_getProgramView(), 84.0, 56.0);
    KesMeasure::WindowOpening::afterFirstFrame(*_getProgramView(),
                                               sigc::mem_fun(*this, &OvercurrentPresenter::_createContent));
}

void OvercurrentPresenter::_createContent()
{
    _content = std::make_unique<ContentPresenter>(_model);
    _content->signalEdit().connect(sigc::mem_fun(*this, &OvercurrentPresenter::requestTestObject));
    _getProgramView()->setContent(*_content->getView());
}

void OvercurrentPresenter::_createMenus()
{
    _menus = std::make_unique<Menus>(*this, _model);
    _menus->fileTail.signalExit.connect(sigc::mem_fun(*this, &OvercurrentPresenter::requestClose));
    getFileRecentManager()->signalChanged.connect(
        sigc::mem_fun(*this, &OvercurrentPresenter::_updateRecentFiles));
    _updateRecentFiles();
    auto& bar = *_getMenuBar();
    bar.addMenu(_menus->file.getView());
    bar.addMenu(_menus->help.getView());
    bar.addToolbar(_menus->fileTools.getView());
    bar.addToolbar(_menus->control.getView());
    bar.addToolbar(_menus->settings.getView());
    bar.addToolbar(_menus->tools.getView());
}

void OvercurrentPresenter::_updateRecentFiles()
{
    _menus->fileTail.setRecentEnabled(!getFileRecentManager()->getCollection().empty());
}

void OvercurrentPresenter::_onFinishedFromModel(bool)
{
    _model.announceOutcome();
}

} // namespace Overcurrent
