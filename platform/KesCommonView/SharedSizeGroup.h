#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/bin.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/sizegroup.h>

#include <map>
#include <string>

namespace Kes {

/// A container whose descendants share column widths: it keeps one horizontal size group per name. GUI
/// thread.
class KES_EXPORT SharedSizeGroupOwner : public Gtk::EventBox {
public:
    SharedSizeGroupOwner();

    /// Made on first use.
    Glib::RefPtr<Gtk::SizeGroup> getSizeGroup(const std::string& name);

private:
    std::map<std::string, Glib::RefPtr<Gtk::SizeGroup>> _groups;
};

/// A container that takes part in the size group of its name in the nearest owner above it, whenever it
/// is placed below one. GUI thread.
class KES_EXPORT SharedSizeGroup : public Gtk::EventBox {
public:
    explicit SharedSizeGroup(std::string name);
    ~SharedSizeGroup() override;

protected:
    void on_hierarchy_changed(Gtk::Widget* previousToplevel) override;

private:
    void _leave();

    std::string _name;
    Glib::RefPtr<Gtk::SizeGroup> _group;
};

} // namespace Kes
