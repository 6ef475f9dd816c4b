#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/WindowBasePresenter.h>

#include <memory>

namespace KesTree {
class Node;
}

namespace KesProgram {

/// The window in which the user sees and edits the test object. Owned by the base presenter while it is open.
/// GUI thread, except as noted.
///
/// What the user types takes effect in the nodes at once, without a confirmation; nodes that are added while
/// the window is open are not shown. Read-only, the values can still be looked at, scrolled and copied.
class KES_EXPORT TestObjectWindowPresenter : public Kes::WindowBasePresenter<Kes::IWindowView> {
public:
    /// The nodes outlive the presenter.
    explicit TestObjectWindowPresenter(KesTree::Node* testObject);
    ~TestObjectWindowPresenter() override;

    /// Any thread. Takes effect later, on the GUI thread, and not at all once the presenter has died.
    void setIsReadOnly(bool readOnly);

protected:
    std::unique_ptr<Kes::IWindowView> _createDefaultView() override;
    void _onViewInited() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
