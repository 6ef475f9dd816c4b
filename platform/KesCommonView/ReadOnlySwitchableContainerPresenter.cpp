#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <gtkmm/box.h>

namespace Kes {

class ReadOnlySwitchableContainerPresenter::View : public Gtk::Box, public IView {
public:
    View() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {}

    ~View() override { GtkWidgetHelper::removeChildren(*this); }

    bool isReadOnly() const { return _readOnly; }

    void place(Gtk::Widget& widget)
    {
        pack_start(widget, Gtk::PACK_EXPAND_WIDGET);
        _apply(widget);
    }

    void setIsReadOnly(bool readOnly)
    {
        _readOnly = readOnly;
        for (auto* child : get_children())
            _apply(*child);
    }

private:
    void _apply(Gtk::Widget& widget)
    {
        if (auto* content = dynamic_cast<IReadOnlySwitchable*>(&widget))
            content->setIsReadOnly(_readOnly);
        else
            widget.set_sensitive(!_readOnly);
    }

    bool _readOnly = false;
};

IReadOnlySwitchable::~IReadOnlySwitchable() = default;

ReadOnlySwitchableContainerPresenter::ReadOnlySwitchableContainerPresenter() : _view(std::make_unique<View>())
{}

ReadOnlySwitchableContainerPresenter::~ReadOnlySwitchableContainerPresenter() = default;

void ReadOnlySwitchableContainerPresenter::add(IView* view)
{
    if (auto* widget = dynamic_cast<Gtk::Widget*>(view))
        _view->place(*widget);
}

IView* ReadOnlySwitchableContainerPresenter::getView()
{
    return _view.get();
}

void ReadOnlySwitchableContainerPresenter::setIsReadOnly(bool readOnly)
{
    _view->setIsReadOnly(readOnly);
}

bool ReadOnlySwitchableContainerPresenter::isReadOnly() const
{
    return _view->isReadOnly();
}

} // namespace Kes
