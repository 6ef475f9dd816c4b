// The commands that menus and toolbars call on the shell.

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/OpenDialogs.h>
#include <KesDriver/XdgOpen.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/FileManagerLocalization.h>

namespace KesProgram {

ArchiveManagerPresenter* ProgramBasePresenter::getArchiveManagerPresenter()
{
    return _fields->archive.get();
}

FileRecentManager* ProgramBasePresenter::getFileRecentManager()
{
    return _getModel()->getFileRecentManager();
}

void ProgramBasePresenter::runDialogs(const std::function<void()>& function)
{
    const Kes::OpenDialogs::Scope dialogs;
    function();
}

void ProgramBasePresenter::createArchive()
{
    _runArchive([](ArchiveManagerPresenter& archive) { archive.create(""); });
}

void ProgramBasePresenter::openArchive()
{
    _runArchive([](ArchiveManagerPresenter& archive) { archive.open(""); });
}

void ProgramBasePresenter::saveArchive()
{
    _runArchive([](ArchiveManagerPresenter& archive) { archive.save(); });
}

void ProgramBasePresenter::saveAsArchive()
{
    _runArchive([](ArchiveManagerPresenter& archive) { archive.saveAs(); });
}

void ProgramBasePresenter::_runArchive(const std::function<void(ArchiveManagerPresenter&)>& command)
{
    if (auto* const archive = getArchiveManagerPresenter())
        runDialogs([&] { command(*archive); });
}

void ProgramBasePresenter::requestHardware()
{
    auto& settings = _fields->hardwareSettings;
    if (!settings) {
        settings = std::make_unique<KesDevice::HardwareManagerPresenter>();
        settings->signalHardwareChanging.connect(
            sigc::mem_fun(*this, &ProgramBasePresenter::_onHardwareChanging));
    }
    settings->edit(getView(), _getModel()->getHardware(), _getModel()->usesLocalHardware());
}

void ProgramBasePresenter::_onHardwareChanging(std::unique_ptr<KesDevice::HardwareManager>& hardware)
{
    _getModel()->setHardware(hardware, false);
}

void ProgramBasePresenter::requestTestObject()
{
    auto& model = *_getModel();
    auto* testObject = model.getTestObject();
    if (_fields->testObject || !testObject)
        return;
    _fields->testObject = std::make_unique<TestObjectWindowPresenter>(testObject);
    auto* window = _fields->testObject.get();
    window->signalClosed.connect(sigc::mem_fun(*this, &ProgramBasePresenter::_onTestObjectClosed));
    _fields->testObjectConnection =
        model.signalRunningChanged.connect([window, &model] { window->setIsReadOnly(model.isRunning()); });
    window->show(getView());
    window->setIsReadOnly(model.isRunning());
}

void ProgramBasePresenter::_onTestObjectClosed()
{
    _fields->testObjectConnection.disconnect();
    // Out of the fields first: the next request makes a new one.
    const auto closed = std::move(_fields->testObject);
}

bool ProgramBasePresenter::hasReport()
{
    auto* model = _getModel();
    return !model || model->hasReport();
}

void ProgramBasePresenter::requestReport()
{
    const std::string path = _getModel()->createReport();
    std::string text = FileManagerLocalization::fileCreateError();
    if (!path.empty()) {
        const auto result = cross::xdg_open(path);
        if (result)
            return;
        text = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    }
    Kes::DialogPresenter::show(getView(), text, "", Kes::DialogResult::Ok);
}

} // namespace KesProgram
