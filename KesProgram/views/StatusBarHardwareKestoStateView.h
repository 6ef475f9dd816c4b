#pragma once

#include <KesCommonView/IResultStateView.h>

#include <gtkmm/label.h>

namespace KesProgram {

/// The state of one device: a text that looks different when valid, invalid and unknown. GUI thread.
class KES_EXPORT StatusBarHardwareKestoStateView : public Gtk::Label, public Kes::IResultStateView {
public:
    StatusBarHardwareKestoStateView();

    void setText(const std::string& text) override;
    void setExtendedText(const std::string& text) override;
    void setIsValid(const Kes::Nullable<bool>& valid) override;
};

} // namespace KesProgram
