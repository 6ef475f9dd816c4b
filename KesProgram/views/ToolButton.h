#pragma once

#include <KesCommon/Export.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/toolbutton.h>

#include <string>

namespace KesProgram {

/// A tool button as all toolbars of the shell have them: a picture, and a tooltip of a title line and
/// a description. GUI thread.
///
/// The title is also the button's accessible name, and its label where a toolbar that is too short lists
/// the button in its overflow menu. A button whose picture cannot be shown shows the label instead.
class KES_EXPORT ToolButton : public Gtk::ToolButton {
public:
    /// The style sheet gives the picture to `imageClass`. `tooltip` is the whole text, title line first.
    ToolButton(const std::string& imageClass, const std::string& tooltip);

    /// Shows the key after the title in the tooltip; the text of the tooltip itself stays unchanged.
    void tellKey(const Key& key);
};

} // namespace KesProgram
