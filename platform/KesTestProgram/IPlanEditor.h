#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesCommonView/IView.h>

namespace KesTestProgram {

/// Edits the plan of a program that has one beside its test object: what the user writes goes into the model,
/// or else into its `setPlanError`. Owned by the content presenter. GUI thread.
class KES_EXPORT IPlanEditor : public Kes::IPresenter {
public:
    /// Why what the user is writing is no plan, where it stays in sight while the editor is scrolled.
    virtual Kes::IView& getErrorView() = 0;
};

} // namespace KesTestProgram
