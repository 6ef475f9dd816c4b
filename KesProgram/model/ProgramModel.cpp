#include <KesProgram/model/ProgramModel.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>
#include <KesCommon/TypeHelper.h>
#include <KesDevice/HardwareControl.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/text/Program.h>

#include <glib.h>
#include <glibmm/miscutils.h>

namespace KesProgram {

namespace {

constexpr unsigned recentFilesCapacity = 10;

std::string helpFileName(const std::string& baseName)
{
    return std::string("Help/") + lng::languageName() + "/" + baseName + ".pdf";
}

std::string besideExecutable(const std::string& name)
{
    return Glib::build_filename(Kes::getKesCrossExeDir(), name);
}

} // namespace

ProgramModel::ProgramModel() : _state(std::make_shared<const std::string>())
{
    const auto tell = [this](const std::string& text) { signalMessage.emit(text); };
    for (auto* signal : {&signalHardwareChanged, &signalCanStartChanged, &signalCanStopChanged,
                         &signalRunningChanged, &signalStateChanged, &signalClosing, &signalClosed})
        signal->setExceptionHandler(tell);
    signalFinished.setExceptionHandler(tell);
}

ProgramModel::~ProgramModel()
{
    signalMessage.clear();
    _shutdownThread.wait();
    _startThread.wait();
    for (const auto& thread : {_disconnectThread, _switchOffThread})
        if (thread)
            thread->wait();
    {
        std::lock_guard lock(_closedMutex);
        if (_closedSource)
            g_source_remove(_closedSource);
    }
    _leaveHardware();
}

void ProgramModel::init()
{
    if (!usesLocalHardware())
        _globalHardwareConnection = KesDevice::HardwareControl::signalHardwareChanged.connect(
            [this](KesDevice::HardwareManager* hardware) { _onHardwareChangedImpl(hardware); });
    _onHardwareChangedImpl(nullptr);
    if (hasArchiveLogic())
        _initArchiveManager();
}

std::string ProgramModel::getProgramName()
{
    return {};
}

std::string ProgramModel::getHelpFileName()
{
    const auto name = helpFileName(getProgramName());
    const auto path = besideExecutable(name);
    for (const auto& place : {path, Kes::findDataFile(name)})
        if (Kes::fileExist(place))
            return place;
    KesLog::Log::writeWarn(Kes::StringHelper::formatC(lng::Program::get("Help.errorOpenFile"), path.c_str()));
    return besideExecutable(helpFileName(lng::Program::get("Help.defaultFileName")));
}

void ProgramModel::newData(const std::string&) {}

std::unique_ptr<std::istream> ProgramModel::getDataStream()
{
    return nullptr;
}

bool ProgramModel::setDataStream(std::istream&, bool)
{
    return true;
}

bool ProgramModel::setRepairDataStream(std::istream&)
{
    return true;
}

std::string ProgramModel::getExtension()
{
    return "???";
}

std::string ProgramModel::getSupportedExtension()
{
    return {};
}

bool ProgramModel::hasArchiveLogic()
{
    return !getExtension().empty();
}

bool ProgramModel::usesLocalHardware()
{
    return false;
}

KesTree::Node* ProgramModel::getTestObject()
{
    return nullptr;
}

Kes::Result ProgramModel::checkResultsFile(const std::string&)
{
    return Kes::Result::failure(lng::Text("Unattended.noResults",
                                          "This program writes no results for other programs.",
                                          "Эта программа не записывает результаты для других программ.")
                                    .get());
}

Kes::Result ProgramModel::writeResults(const std::string& path)
{
    return checkResultsFile(path);
}

std::string ProgramModel::createReport()
{
    return {};
}

bool ProgramModel::hasReport()
{
    return true;
}

std::string ProgramModel::getDataSummary()
{
    return {};
}

void ProgramModel::_onHardwareChanged(KesDevice::HardwareManager*) {}

bool ProgramModel::_onPrepareStart()
{
    return true;
}

void ProgramModel::_onStop() {}

void ProgramModel::_onFinished() {}

void ProgramModel::_onClosing() {}

const std::string& ProgramModel::getState() const
{
    // Another thread may set the text while the caller still reads it: each thread keeps what it was given.
    thread_local std::shared_ptr<const std::string> held;
    std::lock_guard lock(_stateMutex);
    held = _state;
    return *held;
}

ArchiveManager* ProgramModel::getArchiveManager()
{
    return _archiveManager.get();
}

FileRecentManager* ProgramModel::getFileRecentManager()
{
    if (!_recentFiles)
        _recentFiles = std::make_unique<FileRecentManager>(recentFilesCapacity);
    return _recentFiles.get();
}

void ProgramModel::setPackageVersion(const std::string& version)
{
    _packageVersion = version;
}

const std::string& ProgramModel::getPackageVersion() const
{
    return _packageVersion;
}

void ProgramModel::close()
{
    const bool wasRunning = _changeRun([](ModelRunState& run) {
        run.isClosing = true;
        return run.setRunning(false);
    });
    if (wasRunning)
        _tellStopped();
    _runHook(&ProgramModel::_onClosing);
    signalClosing.emit();
    // Without a thread for it the shutdown happens here: the program ends in any case.
    if (!_runSafely(
            [this] { _shutdownThread = Kes::Worker("KesProgram_Shutdown", [this] { _shutdown(); }); }))
        _shutdown();
}

void ProgramModel::_setState(const std::string& text)
{
    {
        std::lock_guard lock(_stateMutex);
        if (*_state == text)
            return;
        _state = std::make_shared<const std::string>(text);
    }
    signalStateChanged.emit();
}

void ProgramModel::_initArchiveManager()
{
    _archiveManager = std::make_unique<ArchiveManager>(
        [this](const std::string& name) { newData(name); }, [this] { return getDataStream(); },
        [this](std::istream& stream, bool flag) { return setDataStream(stream, flag); });
    const std::string lastFile = getFileRecentManager()->getLast();
    _archiveManager->init(lastFile);
    _archiveManager->signalFileNameChanged.connect(
        sigc::mem_fun(*this, &ProgramModel::_onArchiveManagerFileNameChanged));
}

void ProgramModel::_onArchiveManagerFileNameChanged()
{
    const std::string fileName = _archiveManager->getFileName();
    if (!fileName.empty())
        getFileRecentManager()->tryAdd(fileName);
}

std::string ProgramModel::_getProgrammCacheDirectory() const
{
    return Kes::getKesCrossAppCacheDir() + Kes::TypeHelper::getShortTypeName(typeid(*this)) + "/";
}

void ProgramModel::_shutdown()
{
    _startThread.wait();
    if (_disconnectThread)
        _disconnectThread->wait();
    std::lock_guard lock(_closedMutex);
    _closedSource = g_idle_add_full(
        G_PRIORITY_DEFAULT_IDLE,
        [](gpointer model) -> gboolean {
            static_cast<ProgramModel*>(model)->_onShutdown();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
}

void ProgramModel::_onShutdown()
{
    {
        std::lock_guard lock(_closedMutex);
        _closedSource = 0;
    }
    // Here the hooks of the concrete program still live, which a report of this moment may call.
    _leaveHardware();
    // A slot may destroy the model; nothing of it is touched afterwards.
    signalClosed.emit();
}

} // namespace KesProgram
