#include <KesCommonView/CancelableWork.h>

#include <KesCommon/Worker.h>
#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/OpenDialogs.h>

#include <giomm/init.h>

namespace Kes {

void CancelableWork::run(IView* parent, const std::string& text, const Work& work)
{
    Gio::init();
    const auto cancellable = Gio::Cancellable::create();
    auto worker = Worker::tryStart("CancelableWork", [&] { work(cancellable); });
    if (!worker) {
        work(cancellable);
        return;
    }
    const OpenDialogs::Scope dialog;
    const auto isOver = [&] { return !worker->isRunning(); };
    if (!DialogBackend::get().showWaiting({parent, text, "", DialogResult::Cancel}, isOver))
        cancellable->cancel();
    worker->wait();
}

} // namespace Kes
