#include "TemporaryHome.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace KesTest {

TemporaryHome::TemporaryHome()
{
    auto name = (std::filesystem::temp_directory_path() / "kes-test.XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary directory: " + name);
    _path = name;
    _set("HOME", _path);
    _set("XDG_CACHE_HOME", _path / ".cache");
    _set("XDG_CONFIG_HOME", _path / ".config");
    _set("XDG_STATE_HOME", _path / ".local/state");
    _set("XDG_DATA_HOME", _path / ".local/share");
    _set("XDG_DOCUMENTS_DIR", _path / "Documents");
}

TemporaryHome::~TemporaryHome()
{
    for (const auto& [variable, value] : _old) {
        if (value)
            setenv(variable.c_str(), value->c_str(), 1);
        else
            unsetenv(variable.c_str());
    }
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

void TemporaryHome::_set(const char* variable, const std::filesystem::path& value)
{
    const char* old = std::getenv(variable);
    _old.emplace_back(variable, old ? std::optional<std::string>(old) : std::nullopt);
    setenv(variable, value.c_str(), 1);
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const std::filesystem::path& path, const std::string& bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << bytes;
    if (!stream.flush())
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace KesTest
