#include <KesCommonView/AccessibleActions.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/FirstFrame.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/statusbar/ProgramStatusBarPresenter.h>
#include <KesProgram/views/ProgramView.h>
#include <KesTreeManager/KesTreeResources.h>
#include <KesTreeRelay/KesTreeRelayTreeResources.h>

#include <exception>

namespace KesProgram {

ProgramBasePresenter::ProgramBasePresenter() : _fields(std::make_unique<ImplFields>())
{
    KesTreeResources::Integrate();
    KesTreeRelayTreeResources::Integrate();
}

ProgramBasePresenter::~ProgramBasePresenter()
{
    // A window that was never drawn keeps no other one's picture waiting.
    Kes::FirstFrame::forget();
}

void ProgramBasePresenter::open(Kes::IView* parent)
{
    _init();
    _evalOpen(_fields->view.get(), parent);
    signalOpened.emit();
}

void ProgramBasePresenter::setPackageVersion(const std::string& version)
{
    _getModel()->setPackageVersion(version);
}

Kes::IView* ProgramBasePresenter::getView()
{
    return _fields->view.get();
}

std::string ProgramBasePresenter::getProgramName()
{
    return _getModel()->getProgramName();
}

IProgramView* ProgramBasePresenter::_getProgramView()
{
    return _fields->view.get();
}

ProgramMainMenuPresenter* ProgramBasePresenter::_getMenuBar()
{
    return _fields->menuBar.get();
}

void ProgramBasePresenter::_evalOpen(IProgramView* view, Kes::IView* parent)
{
    view->open(parent, false);
}

void ProgramBasePresenter::_onBeforeInit() {}

void ProgramBasePresenter::_onInit() {}

void ProgramBasePresenter::_onFinishedFromModel(bool) {}

std::unique_ptr<Kes::IPresenter> ProgramBasePresenter::_createStatusBar()
{
    return std::make_unique<ProgramStatusBarPresenter>(*_getModel());
}

void ProgramBasePresenter::_init()
{
    if (_fields->openFailure)
        std::rethrow_exception(_fields->openFailure);
    if (_fields->isInitialised)
        return;
    _onBeforeInit();
    _fields->isInitialised = true;
    try {
        _build();
    } catch (...) {
        _fields->openFailure = std::current_exception();
        throw;
    }
}

void ProgramBasePresenter::_build()
{
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();
    Kes::AccessibleActions::comeFromMainLoop();
    Kes::FirstFrame::expect();
    _loadXmlConfig();
    auto& model = *_getModel();
    model.init();
    _connectModel(model);
    if (model.hasArchiveLogic())
        _fields->archive = std::make_unique<ArchiveManagerPresenter>(
            model.getArchiveManager(), this, model.getExtension(), model.getSupportedExtension());
    _createRecovery();
    _fields->menuBar = std::make_unique<ProgramMainMenuPresenter>();
    _fields->statusBar = _createStatusBar();
    _createWindow();
    _onInit();
    _onFinalizeInit();
    _fields->standstillGuard.emplace(model);
    // What has come before there was a window.
    _fields->dialogs.later([this] { _showMessages(); });
}

void ProgramBasePresenter::_connectModel(ProgramModel& model)
{
    _fields->finishedConnection = model.signalFinished.connect([this](bool outputStarted) {
        _fromModel([this, outputStarted] { _onFinishedFromModel(outputStarted); });
    });
    _fields->closingConnection = model.signalClosing.connect([this] { _onUnloadingFromModel(); });
    _fields->closedConnection = model.signalClosed.connect([this] { _onClosedFromModel(); });
    _fields->messageConnection =
        model.signalMessage.connect([this](const std::string& text) { _onMessageFromModel(text); });
}

void ProgramBasePresenter::_createWindow()
{
    _fields->view = std::make_unique<ProgramView>();
    _fields->closingFromView =
        _fields->view->signalClosing.connect(sigc::mem_fun(*this, &ProgramBasePresenter::_onClosingFromView));
    _fields->view->setTitle(getProgramName());
    _fields->view->setHeader(*_fields->menuBar->getView());
    if (_fields->statusBar)
        _fields->view->setFooter(*_fields->statusBar->getView());
}

void ProgramBasePresenter::_onFinalizeInit()
{
    if (_fields->savedRectangle)
        _fields->view->setRectangle(*_fields->savedRectangle);
}

void ProgramBasePresenter::_fromModel(std::function<void()> handler)
{
    if (Kes::ApplicationDispatcher::getInstance().isGuiThread()) {
        // The handler may show a dialog, and the emission that it is called from holds the gate.
        const Kes::SignalGate::Release gate;
        try {
            handler();
        } catch (...) {
            // Not through the emission: a stop or the end of a run would be left half done.
            _fields->dialogs.later([error = std::current_exception()] { std::rethrow_exception(error); });
        }
        return;
    }
    // The queue is served inside waits as well; there a dialog would hold up a stop or a start.
    auto* fields = _fields.get();
    fields->guard.safeBeginUpdateView(
        [fields, handler = std::move(handler)] { fields->dialogs.later(handler); });
}

void ProgramBasePresenter::_onMessageFromModel(const std::string& text)
{
    if (_fields->messages.add(text))
        _fromModel([this] { _showMessages(); });
}

void ProgramBasePresenter::_showMessages()
{
    if (!_fields->view)
        return;
    _fields->messages.showAll([this](const std::string& text) { _fields->view->showMessage(text); });
}

} // namespace KesProgram
