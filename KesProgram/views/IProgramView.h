#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesCommonView/IWindowRectangle.h>

#include <sigc++/sigc++.h>

#include <string>

namespace KesProgram {

/// The main window of a test program: a header, a content and a footer, one above the other.
///
/// The views placed in the window stay their owners' property; they may be destroyed before or after it.
/// GUI thread.
class KES_EXPORT IProgramView : public virtual Kes::IView, public virtual Kes::IWindowRectangle {
public:
    /// The user asks the window to close. The answer of the slot connected last decides: true keeps the
    /// window open; false, and no slot at all, lets it close.
    sigc::signal<bool()> signalClosing;

    /// Shows the window with all that is in it; centred over the parent's window when the parent is in one.
    /// `parent` may be null. `modal` keeps the other windows of the program from the user meanwhile.
    virtual void open(Kes::IView* parent, bool modal) = 0;
    virtual void setTitle(const std::string& title) = 0;
    /// The menu bar and the toolbars, in place of the header so far; none when the view is not a widget.
    virtual void setHeader(Kes::IView& view) = 0;
    /// What the window is about; it takes all the room that is left. A second call replaces the first
    /// content. Throws std::bad_cast for a view that is not a widget.
    virtual void setContent(Kes::IView& view) = 0;
    /// The status bar, set once. Throws std::bad_cast for a view that is not a widget.
    virtual void setFooter(Kes::IView& view) = 0;
    /// Shows a text with a confirming button over the window, and returns when the user has closed it.
    virtual void showMessage(const std::string& text) = 0;

    /// Moves and sizes the window, in GDK pixels: at a scale factor of 2 each is 2 x 2 pixels of the screen.
    void setRectangle(const Kes::RectangleF& rectangle) override = 0;
    /// Read while the window is shown; afterwards the last place it had.
    Kes::RectangleF getRectangle() const override = 0;

    /// Asks the window to close as its close button would: the closing signal is emitted later, from
    /// the main loop. A window that has never been shown stays as it is.
    virtual void close() = 0;
};

} // namespace KesProgram
