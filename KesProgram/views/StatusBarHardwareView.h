#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareView.h>

#include <gtkmm/box.h>

namespace KesProgram {

/// The hardware area: synchronisation, devices, switch of the state updates, side by side. The columns of
/// the device rows line up. GUI thread.
class KES_EXPORT StatusBarHardwareView : public Gtk::HBox, public IStatusBarHardwareView {
public:
    StatusBarHardwareView();

    void setSyncView(Kes::IView* view) override;
    void setKestoCollection(Kes::IView* view) override;
    void setStateUpdateView(Kes::IView* view) override;

private:
    Gtk::Box _sync;
    Kes::SharedSizeGroupOwner _columns;
    Gtk::Box _kestos;
    Gtk::Box _stateUpdate;
};

} // namespace KesProgram
