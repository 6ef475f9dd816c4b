#include <KesProgram/archive/ArchiveManager.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/Log.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/archive/FileAccessError.h>

#include <array>
#include <fstream>
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

} // namespace

ArchiveManager::ArchiveManager(NewData newData, DataProvider getDataStream, DataConsumer setDataStream)
    : _newData(std::move(newData)),
      _getDataStream(std::move(getDataStream)),
      _setDataStream(std::move(setDataStream))
{}

ArchiveManager::~ArchiveManager() = default;

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
    _setActualFileName("");
}

Kes::Result ArchiveManager::open(const std::string& fileName, bool repair)
{
    auto file = Kes::openInputFileUTF8Name(fileName, std::ios::binary);
    if (!file.is_open())
        return FileAccessError::get();
    _setActualFileName(fileName);
    if (!_setDataStream)
        throw std::bad_function_call();
    try {
        if (_setDataStream(file, repair))
            return true;
    } catch (...) {
        // Data that makes its reader throw is as unusable as data that it refuses.
        KesLog::Log::writeError(fileName + ": " + Kes::getCurrentExceptionText());
    }
    return DataFormatError::get();
}

bool ArchiveManager::saveAs(const std::string& fileName)
{
    auto file = Kes::openOutputFileUTF8Name(fileName, std::ios::binary);
    if (!file.is_open())
        return false;
    file << _getDataStream()->rdbuf();
    _setActualFileName(fileName);
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
    // Only the bytes count, here as in saving: what is left of the stream's state does not.
    const auto data = _getDataStream();
    data->clear();
    return !haveSameBytes(file, *data);
}

void ArchiveManager::_setActualFileName(const std::string& fileName)
{
    if (fileName == _fileName)
        return;
    _fileName = fileName;
    signalFileNameChanged.emit();
}

} // namespace KesProgram
