#pragma once

#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace Kes {

/// A presenter whose view is made on first use. GUI thread.
///
/// Its virtual functions are called at that first use, not by the constructor, so the members of the
/// derived class are ready. These die before the view does, child presenters among them, whose views leave
/// it. Slots made with `sigc::mem_fun` of the presenter are cut at its end.
template <typename IViewType>
class PresenterBase : public IPresenter, public sigc::trackable {
public:
    PresenterBase() = default;
    PresenterBase(const PresenterBase&) = delete;
    PresenterBase& operator=(const PresenterBase&) = delete;

    /// Creates the view when there is none, and initialises it once.
    IView* getView() override { return &_getView(); }

protected:
    /// Makes the view, never null; the presenter owns it. Called once; when it throws, the next use of the
    /// view tries again.
    virtual std::unique_ptr<IViewType> _createDefaultView() = 0;
    /// Called once, when the view has just been created; connects and fills it.
    virtual void _onViewInited() {}

    /// The view, made when there is none.
    IViewType& _getView()
    {
        if (!_view) {
            _view = _createDefaultView();
            _onViewInited();
        }
        return *_view;
    }
    bool _hasView() const { return _view != nullptr; }

private:
    std::unique_ptr<IViewType> _view;
};

} // namespace Kes
