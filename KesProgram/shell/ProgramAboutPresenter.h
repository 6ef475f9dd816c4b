#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace Kes {
class AboutView;
}

namespace KesProgram {

class ProgramModel;

/// The about window with the program's name, for programs that show it by themselves. It shows no version;
/// the menu Help, which does, uses `ProgramAboutWindowActivatorPresenter`. GUI thread.
class KES_EXPORT ProgramAboutPresenter : public Kes::IPresenter {
public:
    /// The model is asked for the name at once and not needed afterwards.
    explicit ProgramAboutPresenter(ProgramModel& model);
    ~ProgramAboutPresenter() override;

    /// A `Kes::AboutView`, which is a window: the program calls `present` on it, and places it in nothing.
    /// Escape and its button hide it; it can be shown again. It lies over no other window until the program
    /// gives it one (`set_transient_for`).
    Kes::IView* getView() override;

private:
    std::unique_ptr<Kes::AboutView> _view;
};

} // namespace KesProgram
