#include <KesProgram/archive/ArchiveManager.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/Log.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/archive/FileAccessError.h>
#include <KesProgram/archive/IWorkKeeper.h>
#include <KesProgram/archive/detail/FileIdentity.h>
#include <KesProgram/archive/detail/FormerFile.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

namespace KesProgram {

namespace {

using Block = std::array<char, 65536>;

std::string_view readBlock(std::istream& stream, Block& block)
{
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    return {block.data(), static_cast<std::size_t>(stream.gcount())};
}

bool haveSameBytes(std::istream& one, std::istream& other)
{
    Block blockOfOne, blockOfOther;
    for (;;) {
        const auto bytes = readBlock(one, blockOfOne);
        if (bytes != readBlock(other, blockOfOther))
            return false;
        if (bytes.empty())
            return true;
    }
}

/// Whether the file holds the bytes, and the disk as well: a full one may show only now.
bool isOnDisk(const std::string& path, const std::string& bytes)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return false;
    const bool isSynced = fsync(file) == 0;
    close(file);
    auto written = Kes::openInputFileUTF8Name(path, std::ios::binary);
    std::istringstream expected(bytes);
    return isSynced && written.is_open() && haveSameBytes(written, expected);
}

void removeFile(const std::string& path)
{
    std::error_code ignored;
    if (!path.empty())
        std::filesystem::remove(path, ignored);
}

std::unique_ptr<FileIdentity> identify(const std::string& path)
{
    const auto identity = FileIdentity::of(path);
    return identity ? std::make_unique<FileIdentity>(*identity) : nullptr;
}

} // namespace

ArchiveManager::ArchiveManager(NewData newData, DataProvider getDataStream, DataConsumer setDataStream)
    : _newData(std::move(newData)),
      _getDataStream(std::move(getDataStream)),
      _setDataStream(std::move(setDataStream))
{}

ArchiveManager::~ArchiveManager() = default;

IWorkKeeper::~IWorkKeeper() = default;

void ArchiveManager::init(const std::string& fileName)
{
    if (_isInited)
        return;
    // Stored without a signal: a path that turns out to be bad must not reach the recent files.
    _fileName = fileName;
    if (fileName.empty() || !open(fileName, false))
        create("");
    _isInited = true;
}

void ArchiveManager::create(const std::string& name)
{
    _newData(name);
    _identity.reset();
    _tellKeeper([](IWorkKeeper& keeper) { keeper.onReplaced(); });
    _setActualFileName("");
}

Kes::Result ArchiveManager::open(const std::string& fileName, bool repair)
{
    auto file = Kes::openInputFileUTF8Name(fileName, std::ios::binary);
    if (!file.is_open())
        return FileAccessError::get();
    _identity = identify(fileName);
    _setActualFileName(fileName);
    return _load(file, repair, fileName);
}

Kes::Result ArchiveManager::restore(std::istream& data, const std::string& fileName, bool isFileNewer)
{
    // Another file than any.
    _identity = isFileNewer ? std::make_unique<FileIdentity>() : identify(fileName);
    _setActualFileName(fileName);
    return _load(data, false, fileName);
}

Kes::Result ArchiveManager::_load(std::istream& data, bool repair, const std::string& what)
{
    if (!_setDataStream)
        throw std::bad_function_call();
    try {
        if (_setDataStream(data, repair)) {
            _tellKeeper([](IWorkKeeper& keeper) { keeper.onReplaced(); });
            return true;
        }
    } catch (...) {
        // Data that makes its reader throw is as unusable as data that it refuses.
        KesLog::Log::writeError(what + ": " + Kes::getCurrentExceptionText());
    }
    return DataFormatError::get();
}

bool ArchiveManager::saveAs(const std::string& fileName)
{
    using SaveEnd = IWorkKeeper::SaveEnd;
    // Before the file is touched.
    const auto snapshot = takeSnapshot();
    const std::string bytes = snapshot.pack();
    std::string beside;
    if (!_keepWork(fileName, snapshot, bytes, beside)) {
        KesLog::Log::writeError("saving " + fileName + ": what it holds can be kept nowhere meanwhile");
        _tellKeeper([&](IWorkKeeper& keeper) { keeper.onSaved(fileName, SaveEnd::Untouched); });
        return false;
    }
    const bool isSaved = _overwrite(fileName, bytes, beside);
    if (isSaved)
        _setActualFileName(fileName);
    return isSaved;
}

/// Before a file is overwritten either its bytes or the new ones are in a second place. `beside`: the path of
/// that place when it is no recovery copy.
bool ArchiveManager::_keepWork(const std::string& fileName, const DataSnapshot& snapshot,
                               const std::string& bytes, std::string& beside) const
{
    if (!_keeper)
        return true;
    const std::string former = FormerFile::read(fileName);
    bool isKept = former.empty();
    _tellKeeper(
        [&](IWorkKeeper& keeper) { isKept = keeper.onSaving(fileName, former, snapshot, bytes) || isKept; });
    if (isKept)
        return true;
    beside = FormerFile::keepBeside(fileName, former);
    return !beside.empty();
}

/// False when the file could not be opened.
bool ArchiveManager::_overwrite(const std::string& fileName, const std::string& bytes,
                                const std::string& beside)
{
    using SaveEnd = IWorkKeeper::SaveEnd;
    auto file = Kes::openOutputFileUTF8Name(fileName, std::ios::binary);
    if (!file.is_open()) {
        KesLog::Log::writeError("saving " + fileName + ": " + std::strerror(errno));
        removeFile(beside);
        _tellKeeper([&](IWorkKeeper& keeper) { keeper.onSaved(fileName, SaveEnd::Untouched); });
        return false;
    }
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    const auto end = file && isOnDisk(fileName, bytes) ? SaveEnd::Whole : SaveEnd::Broken;
    if (end == SaveEnd::Broken)
        KesLog::Log::writeError("saving " + fileName + ": the file does not hold what it should" +
                                (beside.empty() ? "" : "; what it held is in " + beside));
    else
        removeFile(beside);
    _identity = identify(fileName);
    _tellKeeper([&](IWorkKeeper& keeper) { keeper.onSaved(fileName, end); });
    return true;
}

bool ArchiveManager::save()
{
    return saveAs(_fileName);
}

bool ArchiveManager::isFileChanged() const
{
    if (!_isInited)
        return false;
    auto file = Kes::openInputFileUTF8Name(_fileName);
    if (!file.is_open())
        return true;
    const auto data = _getPresentData();
    return !data || !haveSameBytes(file, *data);
}

/// Null when the provider throws.
std::unique_ptr<std::istream> ArchiveManager::_getPresentData() const
{
    if (!_getDataStream)
        throw std::bad_function_call();
    try {
        auto data = _getDataStream();
        // Only the bytes count, here as in saving: what is left of the stream's state does not.
        data->clear();
        return data;
    } catch (...) {
        KesLog::Log::writeError(_fileName + ": " + Kes::getCurrentExceptionText());
        return nullptr;
    }
}

bool ArchiveManager::isFileReplaced() const
{
    const auto present = FileIdentity::of(_fileName);
    return _identity && present && *present != *_identity;
}

DataSnapshot ArchiveManager::takeSnapshot() const
{
    return DataSnapshot::take(_getDataStream);
}

void ArchiveManager::setWorkKeeper(IWorkKeeper* keeper)
{
    _keeper = keeper;
}

void ArchiveManager::release(bool isUnsaved)
{
    _tellKeeper([isUnsaved](IWorkKeeper& keeper) { keeper.onReleased(isUnsaved); });
}

/// Neither an opened nor a saved file may depend on whether a copy could be kept.
void ArchiveManager::_tellKeeper(const std::function<void(IWorkKeeper&)>& tell) const
{
    if (!_keeper)
        return;
    try {
        tell(*_keeper);
    } catch (...) {
        KesLog::Log::writeError("keeping a recovery copy: " + Kes::getCurrentExceptionText());
    }
}

void ArchiveManager::_setActualFileName(const std::string& fileName)
{
    if (fileName == _fileName)
        return;
    _fileName = fileName;
    signalFileNameChanged.emit();
}

} // namespace KesProgram
