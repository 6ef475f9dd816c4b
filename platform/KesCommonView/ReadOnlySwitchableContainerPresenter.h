#pragma once

#include <KesCommonView/IPresenter.h>

#include <memory>

namespace Kes {

/// A container whose content can be looked at, scrolled and copied, but not changed, while it is read-only,
/// for instance while a test runs. Editable at first. It guards what the user does; the model has to refuse
/// what comes from elsewhere. GUI thread.
class KES_EXPORT ReadOnlySwitchableContainerPresenter : public IPresenter {
public:
    ReadOnlySwitchableContainerPresenter();
    ~ReadOnlySwitchableContainerPresenter() override;

    /// Places a view below the others and gives it the present state. The view is not owned; its own end
    /// takes it out. A view that is not a widget is ignored.
    void add(IView* view);
    /// The container, owned by this presenter; there is one from the beginning.
    IView* getView() override;
    void setIsReadOnly(bool readOnly);
    bool isReadOnly() const;

private:
    class View;
    std::unique_ptr<View> _view;
};

/// Implemented by content that shows a read-only state better than by being insensitive. Only the views
/// that are added themselves are asked, not the widgets inside them. GUI thread.
class KES_EXPORT IReadOnlySwitchable {
public:
    virtual ~IReadOnlySwitchable();
    virtual void setIsReadOnly(bool readOnly) = 0;
};

} // namespace Kes
