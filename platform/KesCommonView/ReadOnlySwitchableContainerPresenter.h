#pragma once

#include <KesCommonView/IPresenter.h>

#include <memory>

namespace Kes {

/// A container whose content can be looked at, scrolled and copied, but not changed, while it is
/// read-only. GUI thread.
class KES_EXPORT ReadOnlySwitchableContainerPresenter : public IPresenter {
public:
    ReadOnlySwitchableContainerPresenter();
    ~ReadOnlySwitchableContainerPresenter() override;

    /// Places a view; it is not owned. A view that is not a widget is ignored.
    void add(IView* view);
    IView* getView() override;
    void setIsReadOnly(bool readOnly);
    bool isReadOnly() const;

private:
    class View;
    std::unique_ptr<View> _view;
};

/// Implemented by content that shows a read-only state better than by being insensitive.
class KES_EXPORT IReadOnlySwitchable {
public:
    virtual ~IReadOnlySwitchable();
    virtual void setIsReadOnly(bool readOnly) = 0;
};

} // namespace Kes
