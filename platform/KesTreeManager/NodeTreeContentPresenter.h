#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesCommonView/PresenterBase.h>
#include <KesTree/Node.h>

#include <memory>

namespace KesTree {

/// Shows a tree of nodes with an editor for each value; what cannot be accepted is refused in place, with
/// the reason beside the editor. Follows changes made elsewhere. The nodes outlive it. GUI thread.
class KES_EXPORT NodeTreeContentPresenter : public Kes::PresenterBase<Kes::IView> {
public:
    /// Null shows nothing.
    explicit NodeTreeContentPresenter(Node* root);
    ~NodeTreeContentPresenter() override;

protected:
    std::unique_ptr<Kes::IView> _createDefaultView() override;
    void _onViewInited() override;

private:
    Node* _root;
};

} // namespace KesTree
