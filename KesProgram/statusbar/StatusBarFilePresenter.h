#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <string>

namespace KesProgram {

class IStatusBarFileView;
class ProgramModel;

/// The name of the archive file in the status bar; blank for a model without archive logic. GUI thread.
class KES_EXPORT StatusBarFilePresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model has been initialised and outlives the presenter.
    explicit StatusBarFilePresenter(ProgramModel& model);
    ~StatusBarFilePresenter() override;

    Kes::IView* getView() override;

protected:
    /// The path of the file; "[New]." and the extension for a new one.
    std::string _getDisplayFileName();
    void _updateFileName();

private:
    ProgramModel& _model;
    std::unique_ptr<IStatusBarFileView> _view;
};

} // namespace KesProgram
