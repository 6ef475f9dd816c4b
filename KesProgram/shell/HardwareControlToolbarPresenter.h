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

/// The tool buttons Start, Stop and Power off. Start and Stop are on when the model says so. Power off is
/// shown when the program permits it and the devices' state is not being updated. Made and owned by the
/// program. GUI thread.
class KES_EXPORT HardwareControlToolbarPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model outlives the presenter.
    explicit HardwareControlToolbarPresenter(ProgramModel& model);
    ~HardwareControlToolbarPresenter() override;

    Kes::IView* getView() override;

    /// Puts a button of the program after those already there. The view stays its presenter's.
    void addToolButton(Kes::IView& view);
    /// Permits the power-off button; permitted at first.
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
