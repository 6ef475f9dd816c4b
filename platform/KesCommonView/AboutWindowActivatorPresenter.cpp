#include <KesCommonView/AboutWindowActivatorPresenter.h>

#include <KesCommonView/AboutView.h>
#include <KesCommonView/GtkWidgetHelper.h>

namespace Kes {

AboutWindowActivatorPresenter::AboutWindowActivatorPresenter() = default;

AboutWindowActivatorPresenter::~AboutWindowActivatorPresenter() = default;

void AboutWindowActivatorPresenter::show(IView* parent, const std::string& programName,
                                         const std::string& packageVersion)
{
    if (!_view)
        _view = std::make_unique<AboutView>();
    _view->setProgramName(programName);
    _view->setVersion(packageVersion);
    if (auto* window = GtkWidgetHelper::getParentWindow(parent))
        _view->set_transient_for(*window);
    _view->present();
}

IView* AboutWindowActivatorPresenter::getView()
{
    return _view && _view->get_visible() ? _view.get() : nullptr;
}

} // namespace Kes
