#pragma once

#include <KesCommonView/IView.h>

#include <memory>
#include <string>

namespace Kes {

class AboutView;

/// Shows the about window, one at a time. The window is made when it is first asked for and goes with this
/// object, so keep it for as long as the command that shows the window. The window is not modal: a test can
/// be stopped while it is open. GUI thread.
class KES_EXPORT AboutWindowActivatorPresenter {
public:
    AboutWindowActivatorPresenter();
    ~AboutWindowActivatorPresenter();

    /// Shows the window over the parent's window (null: anywhere), or brings the one that is open to the
    /// front. The texts are UTF-8 and replace those of an earlier call; an empty version is not shown.
    void show(IView* parent, const std::string& programName, const std::string& packageVersion);

    /// The about window while it is open, else null.
    IView* getView();

private:
    std::unique_ptr<AboutView> _view;
};

} // namespace Kes
