#pragma once

#include <initializer_list>

namespace Kes {

/// A button of a modal dialog, or a set of buttons: the sum of its members. The numbers are also GTK's
/// response numbers of the buttons; they are above zero because those that GTK gives a meaning are below. A
/// value. Any thread.
enum class DialogResult : unsigned {
    /// No button, the empty set.
    None = 0,
    Yes = 2,
    No = 4,
    /// The only button of a message.
    Ok = 16,
    Cancel = 32,
    /// A question.
    YesNo = Yes | No,
    /// A question that can also be taken back.
    YesNoCancel = Yes | No | Cancel
};

/// The buttons of both sets.
constexpr DialogResult operator|(DialogResult a, DialogResult b)
{
    return static_cast<DialogResult>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
/// The buttons that both sets have.
constexpr DialogResult operator&(DialogResult a, DialogResult b)
{
    return static_cast<DialogResult>(static_cast<unsigned>(a) & static_cast<unsigned>(b));
}

/// Whether the set holds the button.
constexpr bool hasButton(DialogResult set, DialogResult button)
{
    return (set & button) == button && button != DialogResult::None;
}

/// The answer that loses nothing: what Escape, closing the box and an unattended run give. Cancel if there
/// is one, else No, else Ok, else Yes, also for the empty set, which no dialog shows.
constexpr DialogResult decliningAnswer(DialogResult buttons)
{
    for (const auto button : {DialogResult::Cancel, DialogResult::No, DialogResult::Ok})
        if (hasButton(buttons, button))
            return button;
    return DialogResult::Yes;
}

} // namespace Kes
