#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>

namespace Kes {

/// A secondary window with a title and one content. GUI thread.
class KES_EXPORT IWindowView : public IView {
public:
    /// The window has been closed, by the user or by `close`. Its presenter may be destroyed in a slot.
    sigc::signal<void()> signalClosed;

    /// Shows the window over the parent's window (null: anywhere), or brings it to the front.
    virtual void show(IView* parent) = 0;
    /// Emits `signalClosed` before it returns; does nothing when the window is not shown.
    virtual void close() = 0;
    virtual void setTitle(const std::string& title) = 0;
    /// The view is placed, not owned, and has to be a widget (`std::bad_cast` otherwise).
    virtual void setContent(IView& content) = 0;
};

} // namespace Kes
