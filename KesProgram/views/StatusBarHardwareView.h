#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareView.h>

#include <gtkmm/box.h>

#include <memory>

namespace KesProgram {

class RowsArea;

/// The hardware area: synchronisation, devices, switch of the state updates, side by side. The columns of the
/// device rows line up. GUI thread.
///
/// Up to five and a half lines of text high the area grows with its rows; beyond that they scroll, so that
/// many devices do not make the window larger.
///
/// A new view takes the place of the former one, which is taken out and not destroyed: its owner keeps it.
class KES_EXPORT StatusBarHardwareView : public Gtk::HBox, public IStatusBarHardwareView {
public:
    StatusBarHardwareView();
    ~StatusBarHardwareView() override;

    void setSyncView(Kes::IView* view) override;
    /// All rows as one view. The place is named for assistive technology; the rows name themselves.
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
