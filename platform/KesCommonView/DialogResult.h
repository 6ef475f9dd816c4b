#pragma once

#include <initializer_list>

namespace Kes {

/// A button of a modal dialog, or a set of buttons: the sum of its members. A value. Any thread.
enum class DialogResult : unsigned {
    None = 0,
    Yes = 2,
    No = 4,
    Ok = 16,
    Cancel = 32,
    YesNo = Yes | No,
    YesNoCancel = Yes | No | Cancel
};

constexpr DialogResult operator|(DialogResult a, DialogResult b)
{
    return static_cast<DialogResult>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr DialogResult operator&(DialogResult a, DialogResult b)
{
    return static_cast<DialogResult>(static_cast<unsigned>(a) & static_cast<unsigned>(b));
}

/// Whether the set holds the button.
constexpr bool hasButton(DialogResult set, DialogResult button)
{
    return (set & button) == button && button != DialogResult::None;
}

/// The answer that loses nothing: what Escape, closing the box and an unattended run give.
/// Cancel if there is one, else No, else Ok, else Yes.
constexpr DialogResult decliningAnswer(DialogResult buttons)
{
    for (const auto button : {DialogResult::Cancel, DialogResult::No, DialogResult::Ok})
        if (hasButton(buttons, button))
            return button;
    return DialogResult::Yes;
}

} // namespace Kes
