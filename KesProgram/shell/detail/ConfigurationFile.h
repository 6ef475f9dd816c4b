#pragma once

#include <KesCommon/BoundedXmlReader.h>
#include <KesCommon/FileLock.h>

#include <optional>
#include <string>

namespace xmlpp {
class Document;
}

namespace KesProgram {

/// The configuration file of a program, which several instances read and write. It is overwritten in place;
/// meanwhile the former one lies beside it, and is read in its stead when it came out in pieces.
/// GUI thread.
class ConfigurationFile {
public:
    /// Its folder exists when it is to be written.
    explicit ConfigurationFile(std::string path);

    /// Keeps other instances from reading and writing. Nothing, after a while, when one of them does not let
    /// go, and at once when there can be no lock.
    std::optional<Kes::FileLock> lock() const;
    /// The file, or the former one when only that is whole. Throws std::runtime_error when neither is.
    Kes::BoundedXmlReader::Document read() const;
    /// Twice in a row: by the XML library, and as the very bytes of the name. Throws `ConfigurationError`.
    void write(xmlpp::Document& document) const;

private:
    void _probe() const;
    void _keepFormer() const;
    void _writeTwice(xmlpp::Document& document) const;
    void _sync() const;
    [[noreturn]] void _fail(int error) const;

    const std::string _path;
    const std::string _formerPath;
};

} // namespace KesProgram
