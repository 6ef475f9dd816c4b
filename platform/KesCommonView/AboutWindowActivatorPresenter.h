#pragma once

#include <KesCommonView/IView.h>

#include <memory>
#include <string>

namespace Kes {

class AboutView;

/// Shows the about window, one at a time. GUI thread.
class KES_EXPORT AboutWindowActivatorPresenter {
public:
    AboutWindowActivatorPresenter();
    ~AboutWindowActivatorPresenter();

    /// Shows the window over the parent's window, or brings the one that is open to the front.
    void show(IView* parent, const std::string& programName, const std::string& packageVersion);

    /// The about window while it is open, else null.
    IView* getView();

private:
    std::unique_ptr<AboutView> _view;
};

} // namespace Kes
