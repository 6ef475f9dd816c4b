#include <KesCommon/FileStream.h>

#include <filesystem>

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

std::ofstream openOutputFileUTF8Name(const std::string& path, std::ios_base::openmode mode)
{
    return std::ofstream(path, mode);
}

} // namespace Kes
