#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/ZoomedIcon.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include <string>

/// What the parts of the device windows have in common. The looks come from the style sheet
/// KesDevice/KesDevice.css, which `HardwareSettingsView` loads. GUI thread.
namespace KesDevice {

/// In pixels: the wide one between things that are apart, the small one between things that belong together.
inline constexpr int wideGap = 12;
inline constexpr int smallGap = 6;

/// The title of a part.
class KES_EXPORT PartHeading : public Gtk::Label {
public:
    explicit PartHeading(const std::string& text);
};

/// A button that shows an icon; its text is its tooltip and its accessible name.
class KES_EXPORT IconButton : public Gtk::Button {
public:
    /// `icon`: a name in the icon theme. The text is to be set before the button is used.
    explicit IconButton(const std::string& icon);

    void setText(const std::string& text);
};

/// A line with a warning sign that is there only while it has a text, which a screen reader speaks when it
/// appears.
class KES_EXPORT ProblemLine : public Gtk::Box {
public:
    ProblemLine();

    void setText(const std::string& text);
    std::string getText() const { return _text.get_text().raw(); }

private:
    Kes::ZoomedIcon _icon{"dialog-warning-symbolic"};
    Gtk::Label _text;
};

/// A text that wraps between `narrowest` and `widest` characters, aligned to the left; a word that is too
/// long is broken, because names and addresses are chosen elsewhere.
KES_EXPORT void wrapText(Gtk::Label& label, int narrowest, int widest);

/// Adds or removes the style class.
KES_EXPORT void setStyleClass(Gtk::Widget& widget, const char* styleClass, bool present);

} // namespace KesDevice
