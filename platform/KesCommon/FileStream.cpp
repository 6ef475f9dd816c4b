#include <KesCommon/FileStream.h>

namespace Kes {

std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode)
{
    return std::ifstream(path, mode);
}

std::ofstream openOutputFileUTF8Name(const std::string& path, std::ios_base::openmode mode)
{
    return std::ofstream(path, mode);
}

} // namespace Kes
