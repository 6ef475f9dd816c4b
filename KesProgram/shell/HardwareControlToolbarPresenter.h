#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesCommonView/LatestUpdate.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IHardwareControlToolbarView;
class ProgramModel;

/// The tool buttons Start, Stop and Power off. Made and owned by the program. GUI thread.
///
/// Start and Stop call `ProgramModel::startTest` and `stopTest`, and are on when the model says so: pressing
/// one changes nothing by itself. Power off disconnects the devices (`ProgramModel::beginDisconnect`), which
/// ends a run as well. It is shown when the program permits it and the devices' state is not being updated:
/// an update would connect them again. Changes on other threads are shown when the GUI thread gets to them.
class KES_EXPORT HardwareControlToolbarPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model outlives the presenter.
    explicit HardwareControlToolbarPresenter(ProgramModel& model);
    ~HardwareControlToolbarPresenter() override;

    /// A toolbar, for `ProgramMainMenuPresenter::addToolbar`.
    Kes::IView* getView() override;

    /// Puts a button of the program after those already there. The view stays its presenter's.
    void addToolButton(Kes::IView& view);
    /// Permits the power-off button; permitted at first. It stays hidden all the same while the devices'
    /// state is being updated.
    void setCanPowerOff(bool can);

private:
    bool _getCanPowerOff() const;
    void _onUpdatingChanged(bool updating);
    void _updateCanStart();
    void _updateCanStop();

    ProgramModel& _model;
    std::unique_ptr<IHardwareControlToolbarView> _view;
    bool _canPowerOff = true;
    Kes::LatestUpdate<bool> _isUpdating;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _canStartConnection;
    Kes::ScopedConnection _canStopConnection;
    Kes::ScopedConnection _updatingConnection;
};

} // namespace KesProgram
