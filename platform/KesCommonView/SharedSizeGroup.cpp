#include <KesCommonView/SharedSizeGroup.h>

#include <utility>

namespace Kes {

namespace {

SharedSizeGroupOwner* findOwner(Gtk::Widget& widget)
{
    for (auto* parent = widget.get_parent(); parent; parent = parent->get_parent())
        if (auto* owner = dynamic_cast<SharedSizeGroupOwner*>(parent))
            return owner;
    return nullptr;
}

} // namespace

SharedSizeGroupOwner::SharedSizeGroupOwner()
{
    set_visible_window(false);
}

Glib::RefPtr<Gtk::SizeGroup> SharedSizeGroupOwner::getSizeGroup(const std::string& name)
{
    auto& group = _groups[name];
    if (!group)
        group = Gtk::SizeGroup::create(Gtk::SIZE_GROUP_HORIZONTAL);
    return group;
}

SharedSizeGroup::SharedSizeGroup(std::string name) : _name(std::move(name))
{
    set_visible_window(false);
}

// A size group lets go of a destroyed widget by itself; GTK's part of a managed one has gone by now.
SharedSizeGroup::~SharedSizeGroup() = default;

void SharedSizeGroup::on_hierarchy_changed(Gtk::Widget* previousToplevel)
{
    Gtk::EventBox::on_hierarchy_changed(previousToplevel);
    _leave();
    if (auto* owner = findOwner(*this)) {
        _group = owner->getSizeGroup(_name);
        _group->add_widget(*this);
    }
}

void SharedSizeGroup::_leave()
{
    if (const auto group = std::exchange(_group, {}))
        group->remove_widget(*this);
}

} // namespace Kes
