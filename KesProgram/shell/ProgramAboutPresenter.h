#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace Kes {
class AboutView;
}

namespace KesProgram {

class ProgramModel;

/// An about view with the program's name, for programs that place it themselves. GUI thread.
class KES_EXPORT ProgramAboutPresenter : public Kes::IPresenter {
public:
    explicit ProgramAboutPresenter(ProgramModel& model);
    ~ProgramAboutPresenter() override;

    Kes::IView* getView() override;

private:
    std::unique_ptr<Kes::AboutView> _view;
};

} // namespace KesProgram
