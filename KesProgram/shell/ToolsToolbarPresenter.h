#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IToolsToolbarView;
class ProgramBasePresenter;

/// The tool buttons Test object and, unless `ProgramModel::hasReport` says no, Report. Made and owned by the
/// program, in `_onInit` or later. GUI thread.
///
/// The commands are `ProgramBasePresenter::requestTestObject` and `requestReport`. Both are always on: during
/// a test the window of the test object is read-only.
class KES_EXPORT ToolsToolbarPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell outlives the presenter. `showTestObject`: for programs that have a test object.
    ToolsToolbarPresenter(ProgramBasePresenter* shell, bool showTestObject);
    ~ToolsToolbarPresenter() override;

    /// A toolbar, for `ProgramMainMenuPresenter::addToolbar`.
    Kes::IView* getView() override;

private:
    std::unique_ptr<IToolsToolbarView> _view;
};

} // namespace KesProgram
