#include <KesTestProgram/TestPresenter.h>

#include <KesTestProgram/FileMenuTailView.h>
#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesCommonView/CancelableWork.h>
#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/FileDialogPresenter.h>
#include <KesDriver/XdgOpen.h>
#include <KesMeasure/ReportFile.h>
#include <KesMeasureView/WindowOpening.h>
#include <KesProgram/archive/ArchiveManager.h>
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

#include <filesystem>

namespace KesTestProgram {

struct TestPresenter::Menus {
    Menus(TestPresenter& shell, TestProgramModel& model)
        : file(&shell), recent(&shell), fileTail(*file.getView(), *recent.getView()), help(&shell, model)
    {}

    KesProgram::FileMenuPresenter file;
    KesProgram::FileRecentMenuPresenter recent;
    FileMenuTailView fileTail;
    KesProgram::HelpMenuPresenter help;
};

struct TestPresenter::Toolbars {
    Toolbars(TestPresenter& shell, TestProgramModel& model)
        : file(&shell), control(model), settings(&shell), tools(&shell, true)
    {}

    KesProgram::FileToolbarPresenter file;
    KesProgram::HardwareControlToolbarPresenter control;
    KesProgram::HardwareSettingsToolbarPresenter settings;
    KesProgram::ToolsToolbarPresenter tools;
};

TestPresenter::TestPresenter(TestProgramModel& model) : _model(model)
{
    _model.confirmReplacing = [this] { return _ask(lng::TestProgram::get("Run.replaceUnsaved")); };
    _model.chooseStart = [this] { return _chooseStart(); };
}

TestPresenter::~TestPresenter()
{
    _model.confirmReplacing = nullptr;
    _model.chooseStart = nullptr;
}

void TestPresenter::openFile(const std::string& fileName)
{
    runDialogs([&] {
        auto& archive = *getArchiveManagerPresenter();
        if (_model.isUntouched())
            archive.replace(fileName);
        else
            archive.open(fileName);
    });
}

void TestPresenter::saveArchive()
{
    if (_confirmSavedPlan())
        ProgramBasePresenter::saveArchive();
}

void TestPresenter::saveAsArchive()
{
    if (_confirmSavedPlan())
        ProgramBasePresenter::saveAsArchive();
}

/// What is saved is not what the window shows while that is no plan.
bool TestPresenter::_confirmSavedPlan()
{
    const std::string& error = _model.getPlanError();
    return error.empty() ||
           _ask(Kes::StringHelper::format(lng::TestProgram::get("Plan.saveLastValid"), error));
}

bool TestPresenter::_ask(const std::string& question)
{
    return Kes::DialogPresenter::show(getView(), question, "", Kes::DialogResult::YesNo) ==
           Kes::DialogResult::Yes;
}

std::optional<RunKind> TestPresenter::_chooseStart()
{
    if (!Kes::DialogBackend::get().hasUser())
        return RunKind::Anew;
    switch (Kes::DialogPresenter::show(getView(), lng::TestProgram::get("Run.continue"), "",
                                       Kes::DialogResult::YesNoCancel)) {
    case Kes::DialogResult::Yes:
        return RunKind::Rest;
    case Kes::DialogResult::No:
        return RunKind::Anew;
    default:
        return std::nullopt;
    }
}

std::unique_ptr<IPlanEditor> TestPresenter::_createPlanEditor()
{
    return nullptr;
}

void TestPresenter::requestReport()
{
    runDialogs([this] {
        using lng::TestProgram::get;
        const auto path = Kes::FileDialogPresenter().show(
            getView(), get("Report.title"), {{"*.html", get("Report.kind")}, {"*.pdf", get("Report.pdf")}},
            true, _suggestReport());
        if (path.empty())
            return;
        auto result = _writeReport(path);
        if (result)
            result = cross::xdg_open(path);
        if (result.getError())
            Kes::DialogPresenter::show(getView(),
                                       Kes::ObjectErrorHelper::toDisplayString({result.getError()}), "",
                                       Kes::DialogResult::Ok);
    });
}

Kes::Result TestPresenter::_writeReport(const std::string& path)
{
    if (!KesMeasure::ReportFile::isPdf(path))
        return _model.writeReport(path);
    Kes::Result result(false);
    const auto write = _model.prepareReport(path);
    Kes::CancelableWork::run(getView(), lng::TestProgram::get("Report.making"),
                             [&](const auto& cancellable) { result = write(cancellable); });
    return result;
}

std::string TestPresenter::_suggestReport()
{
    const auto* archive = _model.getArchiveManager();
    std::filesystem::path base;
    if (archive && !archive->isNew()) {
        base = archive->getFileName();
    } else {
        const auto folder = Kes::getKesCrossDocDir();
        Kes::mkdir_with_parents(folder);
        base = folder + getProgramName();
    }
    base.replace_extension();
    const auto isTaken = [](const std::string& stem) {
        return Kes::fileExist(stem + ".html") || Kes::fileExist(stem + ".pdf");
    };
    auto stem = base.string();
    for (int number = 2; isTaken(stem); ++number)
        stem = base.string() + "-" + std::to_string(number);
    return stem + ".html";
}

void TestPresenter::_onInit()
{
    _createMenus();
    KesMeasure::WindowOpening::setDefaultSize(*_getProgramView(), 88.0, 56.0);
    KesMeasure::WindowOpening::afterFirstFrame(*_getProgramView(),
                                               sigc::mem_fun(*this, &TestPresenter::_fill));
}

/// What would hold up the first frame by a few milliseconds.
void TestPresenter::_fill()
{
    _createToolbars();
    _content = std::make_unique<TestContentPresenter>(_model, _createPlanEditor());
    _content->signalEdit().connect(sigc::mem_fun(*this, &TestPresenter::requestTestObject));
    _getProgramView()->setContent(*_content->getView());
}

void TestPresenter::_createMenus()
{
    _menus = std::make_unique<Menus>(*this, _model);
    _menus->fileTail.signalExit.connect(sigc::mem_fun(*this, &TestPresenter::requestClose));
    getFileRecentManager()->signalChanged.connect(sigc::mem_fun(*this, &TestPresenter::_updateRecentFiles));
    _updateRecentFiles();
    auto& bar = *_getMenuBar();
    bar.addMenu(_menus->file.getView());
    bar.addMenu(_menus->help.getView());
}

void TestPresenter::_createToolbars()
{
    _toolbars = std::make_unique<Toolbars>(*this, _model);
    auto& bar = *_getMenuBar();
    bar.addToolbar(_toolbars->file.getView());
    bar.addToolbar(_toolbars->control.getView());
    bar.addToolbar(_toolbars->settings.getView());
    bar.addToolbar(_toolbars->tools.getView());
}

void TestPresenter::_updateRecentFiles()
{
    _menus->fileTail.setRecentEnabled(!getFileRecentManager()->getCollection().empty());
}

void TestPresenter::_onFinishedFromModel(bool)
{
    _model.announceOutcome();
}

} // namespace KesTestProgram
