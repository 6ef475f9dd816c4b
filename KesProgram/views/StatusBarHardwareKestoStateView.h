#pragma once

#include <KesCommonView/IResultStateView.h>

#include <gtkmm/label.h>

namespace KesProgram {

/// The state of one device: a text that looks different when valid, invalid and unknown. GUI thread.
///
/// The look is a style class of the family's style sheets: `stateError` when invalid, `stateUndefined` when
/// unknown, none when valid. Bytes that are not UTF-8 are shown as replacement characters.
class KES_EXPORT StatusBarHardwareKestoStateView : public Gtk::Label, public Kes::IResultStateView {
public:
    StatusBarHardwareKestoStateView();

    void setText(const std::string& text) override;
    void setExtendedText(const std::string& text) override;
    void setIsValid(const Kes::Nullable<bool>& valid) override;
};

} // namespace KesProgram
