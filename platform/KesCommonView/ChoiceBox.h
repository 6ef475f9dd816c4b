#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/comboboxtext.h>

namespace Kes {

/// A drop-down list of texts for a page that scrolls: the wheel scrolls the page and does not change the
/// choice on which the pointer happens to rest, and where there is not enough room a long text is cut rather
/// than the row. GUI thread.
class KES_EXPORT ChoiceBox : public Gtk::ComboBoxText {
public:
    ChoiceBox();

protected:
    bool on_scroll_event(GdkEventScroll* event) override;
};

} // namespace Kes
