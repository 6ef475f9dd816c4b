#include <KesCommonView/EarlyLoading.h>

#include <dlfcn.h>
#include <fontconfig/fontconfig.h>

namespace Kes {

namespace {

/// What is loaded here is not kept: later uses find library and configuration in memory.
///
/// Nothing here may touch GObject. A type that this thread registers (drawing a picture registers several)
/// and a class that GTK initialises at the same time wait for each other's locks for ever.
void load()
{
    FcInit();
    // The library behind GTK's loader of pictures, by far the largest that is loaded after the start.
    dlopen("librsvg-2.so.2", RTLD_LAZY);
}

} // namespace

EarlyLoading::EarlyLoading() : _thread(Worker::tryStart("Kes_Early", load)) {}

EarlyLoading::~EarlyLoading() = default;

} // namespace Kes
