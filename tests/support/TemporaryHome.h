#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KesTest {

/// A home directory of one test's own: HOME, the XDG base directories and the documents folder lie in a
/// new temporary directory until the object dies; then the environment is as before and the directory gone.
class TemporaryHome {
public:
    TemporaryHome();
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    const std::filesystem::path& getPath() const { return _path; }
    /// A path below the home, in text form.
    std::string file(const std::string& name) const { return (_path / name).string(); }

private:
    void _set(const char* variable, const std::filesystem::path& value);

    std::filesystem::path _path;
    std::vector<std::pair<std::string, std::optional<std::string>>> _old;
};

/// The bytes of a file; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);
/// Writes the bytes, making the folders above when needed.
void writeFile(const std::filesystem::path& path, const std::string& bytes);

} // namespace KesTest
