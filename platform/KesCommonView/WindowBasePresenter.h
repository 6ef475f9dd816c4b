#pragma once

#include <KesCommon/EmitLast.h>
#include <KesCommonView/IWindowView.h>
#include <KesCommonView/PresenterBase.h>

namespace Kes {

/// The presenter of a secondary window. GUI thread.
template <typename IViewType = IWindowView>
class WindowBasePresenter : public PresenterBase<IViewType> {
public:
    /// The window has been closed. A slot may destroy the presenter.
    sigc::signal<void()> signalClosed;

    /// Makes the window when there is none, and shows it over the parent's window; null: anywhere.
    void show(IView* parent)
    {
        auto& view = this->_getView();
        if (!_closed.connected())
            _closed = view.signalClosed.connect(sigc::mem_fun(*this, &WindowBasePresenter::_onClosed));
        view.show(parent);
    }
    /// Closes the window, which emits `signalClosed`; does nothing before the first `show`.
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
