#include <KesCommonView/EarlyLoading.h>

#include <KesCommon/Directories.h>
#include <KesCommon/ThreadHelper.h>

#include <fontconfig/fontconfig.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <string>

namespace Kes {

namespace {

/// What is loaded here is not kept: later uses find library, module and configuration in memory.
void load(const std::string& picture)
{
    ThreadHelper::setCurrentThreadName("Kes_Early");
    FcInit();
    if (auto* pixbuf = gdk_pixbuf_new_from_file_at_size(picture.c_str(), 16, 16, nullptr))
        g_object_unref(pixbuf);
}

} // namespace

EarlyLoading::EarlyLoading() : _thread(load, getThemesDir() + "Icons/Shell/Program.svg")
{
}

EarlyLoading::~EarlyLoading()
{
    _thread.join();
}

} // namespace Kes
