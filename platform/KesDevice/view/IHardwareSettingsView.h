#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>

namespace KesDevice {

/// The window in which a configuration is edited. GUI thread.
class KES_EXPORT IHardwareSettingsView : public Kes::IView {
public:
    /// OK, or Enter where it means nothing else.
    sigc::signal<void()> signalConfirmed;
    /// Cancel, Escape, or the window's own closing button; the window is closed.
    sigc::signal<void()> signalCancelled;

    /// Shows the window over the parent's window, or brings it to the front. A modal one keeps the other
    /// windows of the program from the user.
    virtual void open(Kes::IView* parent, bool modal) = 0;
    /// Without a signal.
    virtual void close() = 0;
    /// The parts are placed, not owned.
    virtual void setParts(Kes::IView& devices, Kes::IView& search, Kes::IView& sync) = 0;
    /// Something to know about the whole configuration; empty: nothing.
    virtual void setNotice(const std::string& notice) = 0;
    /// Why the configuration cannot be confirmed; empty: nothing.
    virtual void setProblem(const std::string& problem) = 0;
};

} // namespace KesDevice
