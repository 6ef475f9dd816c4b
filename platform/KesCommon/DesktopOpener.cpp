#include <KesCommon/DesktopOpener.h>

#include <KesCommon/CommonText.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>

#include <giomm/appinfo.h>
#include <giomm/file.h>
#include <giomm/init.h>

#include <utility>

namespace Kes {

namespace {

Result openOnDesktop(const std::string& path)
{
    const auto failure = [&](const std::string& reason) {
        return Result::failure(StringHelper::format(lng::Common::get("error.FileOpen"), reason, path));
    };
    try {
        Gio::init();
        if (!Gio::AppInfo::launch_default_for_uri(Gio::File::create_for_path(path)->get_uri()))
            return failure("");
    } catch (const Glib::Error& error) {
        return failure(error.what().raw());
    }
    return true;
}

DesktopOpener::Backend& backend()
{
    static DesktopOpener::Backend current;
    return current;
}

} // namespace

Result DesktopOpener::open(const std::string& path)
{
    if (!fileExist(path))
        return Result::failure(StringHelper::format(lng::Common::get("error.FileMissing"), path));
    return backend() ? backend()(path) : openOnDesktop(path);
}

DesktopOpener::Backend DesktopOpener::replace(Backend replacement)
{
    return std::exchange(backend(), std::move(replacement));
}

} // namespace Kes
