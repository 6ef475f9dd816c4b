#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareView.h>

#include <gtkmm/box.h>

#include <memory>

namespace KesProgram {

class RowsArea;

/// The hardware area: synchronisation, devices, switch of the state updates, side by side. The columns of
/// the device rows line up; many rows scroll. GUI thread.
class KES_EXPORT StatusBarHardwareView : public Gtk::HBox, public IStatusBarHardwareView {
public:
    StatusBarHardwareView();
    ~StatusBarHardwareView() override;

    void setSyncView(Kes::IView* view) override;
    void setKestoCollection(Kes::IView* view) override;
    void setStateUpdateView(Kes::IView* view) override;

private:
    Gtk::Box _sync;
    Kes::SharedSizeGroupOwner _columns;
    std::unique_ptr<RowsArea> _rows;
    Gtk::Box _kestos;
    Gtk::Box _stateUpdate;
};

} // namespace KesProgram
