#include <KesCommon/ThreadHelper.h>

#include <cstddef>
#include <pthread.h>

namespace Kes::ThreadHelper {

namespace {

constexpr std::size_t longestName = 15;

} // namespace

void setCurrentThreadName(const std::string& name)
{
    auto length = name.size();
    if (length > longestName) {
        length = longestName;
        while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0U) == 0x80U)
            --length;
    }
    pthread_setname_np(pthread_self(), name.substr(0, length).c_str());
}

} // namespace Kes::ThreadHelper
