#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/bin.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/sizegroup.h>

#include <map>
#include <string>

namespace Kes {

/// A container whose descendants share column widths: it keeps one horizontal size group per name. For rows
/// that are views of their own and therefore cannot be lines of one grid. Owners may lie within each other;
/// a column belongs to the nearest one. GUI thread.
class KES_EXPORT SharedSizeGroupOwner : public Gtk::EventBox {
public:
    SharedSizeGroupOwner();

    /// Made on first use. Any widget may be added to it; a `SharedSizeGroup` does it by itself.
    Glib::RefPtr<Gtk::SizeGroup> getSizeGroup(const std::string& name);

private:
    std::map<std::string, Glib::RefPtr<Gtk::SizeGroup>> _groups;
};

/// A container that takes part in the size group of its name in the nearest owner above it, whenever it is
/// placed below one: all of that name below the owner are as wide as the widest of them. Without an owner
/// it is as wide as its own content. GUI thread.
class KES_EXPORT SharedSizeGroup : public Gtk::EventBox {
public:
    /// The name of the column, such as "editor"; never shown.
    explicit SharedSizeGroup(std::string name);
    ~SharedSizeGroup() override;

protected:
    /// Leaves its group and joins that of the owner above it, if there is one.
    void on_hierarchy_changed(Gtk::Widget* previousToplevel) override;

private:
    void _leave();

    std::string _name;
    Glib::RefPtr<Gtk::SizeGroup> _group;
};

} // namespace Kes
