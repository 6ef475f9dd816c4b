#include <KesCommonView/DialogBackend.h>

#include <KesCommonView/GtkDialogs.h>

#include <utility>

namespace Kes {

namespace {

std::unique_ptr<DialogBackend>& installed()
{
    static std::unique_ptr<DialogBackend> backend;
    return backend;
}

} // namespace

DialogBackend::~DialogBackend() = default;

bool DialogBackend::showWaiting(const MessageRequest&, const std::function<bool()>&)
{
    return true;
}

DialogBackend& DialogBackend::get()
{
    static GtkDialogs gtk;
    return installed() ? *installed() : gtk;
}

std::unique_ptr<DialogBackend> DialogBackend::install(std::unique_ptr<DialogBackend> backend)
{
    return std::exchange(installed(), std::move(backend));
}

} // namespace Kes
