#pragma once

#include <KesCommon/EmitLast.h>
#include <KesCommonView/IWindowView.h>
#include <KesCommonView/PresenterBase.h>

namespace Kes {

/// The presenter of a secondary window. The derived class makes the window in `_createDefaultView` and
/// fills it in `_onViewInited`, both at the first `show` or `getView`. A closed window is kept and can be
/// shown again. GUI thread.
template <typename IViewType = IWindowView>
class WindowBasePresenter : public PresenterBase<IViewType> {
public:
    /// The window has been closed, by the user or by `close`, once for each time it was shown. A slot may
    /// destroy the presenter.
    sigc::signal<void()> signalClosed;

    /// Makes the window when there is none, and shows it over the parent's window; null: anywhere. A window
    /// that is open already comes to the front.
    void show(IView* parent)
    {
        auto& view = this->_getView();
        if (!_closed.connected())
            _closed = view.signalClosed.connect(sigc::mem_fun(*this, &WindowBasePresenter::_onClosed));
        view.show(parent);
    }
    /// Closes the window, which emits `signalClosed` before this returns; does nothing before the first
    /// `show` and when the window is closed already.
    void close()
    {
        if (this->_hasView())
            this->_getView().close();
    }

private:
    void _onClosed() { Kes::emitLast(signalClosed); }

    sigc::connection _closed;
};

} // namespace Kes
