#include <KesProgram/shell/detail/ConfigurationFile.h>

#include <KesCommon/FileStream.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/SystemError.h>
#include <KesProgram/shell/ConfigurationError.h>

#include <fcntl.h>
#include <libxml++/libxml++.h>
#include <libxml/parser.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace KesProgram {

namespace {

constexpr std::chrono::seconds longestWait{2};
constexpr mode_t newFileMode = 0666;

/// Not left to the XML library, which takes a path for a URI and reports a missing file on standard error.
std::optional<std::string> readFile(const std::string& path)
{
    auto stream = Kes::openInputFileUTF8Name(path, std::ios::in | std::ios::binary);
    if (!stream.is_open())
        return std::nullopt;
    // One that is too long is no configuration, like an empty one.
    return Kes::readAtMost(stream, Kes::BoundedXmlReader::Limits().bytes).value_or(std::string());
}

/// `error`: why there is none.
Kes::BoundedXmlReader::Document parse(const std::optional<std::string>& text, std::string& error)
{
    Kes::BoundedXmlReader reader;
    reader.setOptions(XML_PARSE_NOBLANKS);
    auto document = reader.read(text.value_or(std::string()));
    error = reader.getError();
    return document;
}

bool isWhole(const std::optional<std::string>& text)
{
    std::string ignored;
    return parse(text, ignored) != nullptr;
}

} // namespace

ConfigurationFile::ConfigurationFile(std::string path)
    : _path(std::move(path)), _formerPath(_path + ".former")
{}

std::optional<Kes::FileLock> ConfigurationFile::lock() const
{
    return Kes::FileLock::takeWithin(_path + ".lock", longestWait);
}

Kes::BoundedXmlReader::Document ConfigurationFile::read() const
{
    const auto text = readFile(_path);
    std::string error, ignored;
    auto document = parse(text, error);
    if (!document)
        document = parse(readFile(_formerPath), ignored);
    if (!document)
        throw std::runtime_error(text ? error : "cannot open " + _path);
    return document;
}

void ConfigurationFile::write(xmlpp::Document& document) const
{
    _probe();
    _keepFormer();
    _writeTwice(document);
    _sync();
    std::error_code ignored;
    std::filesystem::remove(_formerPath, ignored);
}

/// The XML library has no words for a user.
void ConfigurationFile::_probe() const
{
    const int file = open(_path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, newFileMode);
    if (file < 0)
        _fail(errno);
    close(file);
}

void ConfigurationFile::_keepFormer() const
{
    const auto text = readFile(_path);
    if (!isWhole(text))
        return;
    errno = 0;
    if (!Kes::writeWholeFile(_formerPath, *text))
        _fail(errno);
}

void ConfigurationFile::_writeTwice(xmlpp::Document& document) const
{
    errno = 0;
    try {
        document.write_to_file_formatted(_path);
        // Once more as the very bytes of the name: the XML library takes the path for a URI.
        auto stream = Kes::openOutputFileUTF8Name(_path, std::ios::out);
        document.write_to_stream_formatted(stream);
        stream.close();
        if (stream)
            return;
    } catch (const std::exception&) {
        // Its reason is in errno.
    }
    _fail(errno);
}

void ConfigurationFile::_sync() const
{
    const int file = open(_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    const bool isSynced = file >= 0 && fsync(file) == 0;
    const int error = errno;
    if (file >= 0)
        close(file);
    if (!isSynced || !isWhole(readFile(_path)))
        _fail(isSynced ? EIO : error);
}

void ConfigurationFile::_fail(int error) const
{
    throw ConfigurationError(_path, Kes::getSystemErrorText(error ? error : EIO));
}

} // namespace KesProgram
