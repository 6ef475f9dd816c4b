#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <string>

namespace KesProgram {

class IStatusBarFileView;
class ProgramModel;

/// The name of the archive file in the status bar; blank for a model without archive logic. It follows the
/// name, and does not show whether there is anything to save. GUI thread.
///
/// A part of `ProgramStatusBarPresenter`; a program with a bar of its own may make one as well.
class KES_EXPORT StatusBarFilePresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model has been initialised and outlives the presenter.
    explicit StatusBarFilePresenter(ProgramModel& model);
    ~StatusBarFilePresenter() override;

    Kes::IView* getView() override;

protected:
    /// The path of the file; "[New]." and the extension for a new one. Only for a model with archive logic,
    /// as the next one.
    std::string _getDisplayFileName();
    /// Shows that name; the presenter does so itself after each `ArchiveManager::signalFileNameChanged`.
    void _updateFileName();

private:
    ProgramModel& _model;
    std::unique_ptr<IStatusBarFileView> _view;
};

} // namespace KesProgram
