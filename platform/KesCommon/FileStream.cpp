#include <KesCommon/FileStream.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace Kes {

std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode)
{
    std::ifstream stream;
    std::error_code error;
    // To open a pipe would wait for whoever writes into it, and a folder opens but cannot be read.
    if (std::filesystem::is_regular_file(path, error))
        stream.open(path, mode);
    else
        stream.setstate(std::ios::failbit);
    return stream;
}

std::optional<std::string> readAtMost(std::istream& stream, std::size_t bytes)
{
    constexpr std::size_t blockSize = 65536;
    std::string text;
    while (stream && text.size() <= bytes) {
        const auto used = text.size();
        text.resize(used + std::min(blockSize, bytes + 1 - used));
        stream.read(text.data() + used, static_cast<std::streamsize>(text.size() - used));
        text.resize(used + static_cast<std::size_t>(stream.gcount()));
    }
    return text.size() <= bytes ? std::optional(std::move(text)) : std::nullopt;
}

std::ofstream openOutputFileUTF8Name(const std::string& path, std::ios_base::openmode mode)
{
    std::ofstream stream;
    std::error_code error;
    if (std::filesystem::is_fifo(path, error))
        stream.setstate(std::ios::failbit);
    else
        stream.open(path, mode);
    return stream;
}

} // namespace Kes
