#pragma once

#include <Overcurrent/data/PlanTexts.h>

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <optional>

namespace Overcurrent {

/// The editors of the plan, as texts: what they mean is up to `PlanTexts`. GUI thread.
class IPlanView : public Kes::IView {
public:
    /// The user has changed a text; not emitted by `setTexts`.
    sigc::signal<void()> signalEdited;

    virtual void setTexts(const PlanTexts& texts) = 0;
    /// As the user has typed them.
    virtual PlanTexts getTexts() const = 0;
    /// Why the texts are no plan; nothing: they are one.
    virtual void setError(const std::optional<PlanTextError>& error) = 0;
    /// The text of the error, to be placed where it stays in sight while the editors are scrolled.
    virtual Kes::IView& getErrorView() = 0;
    /// Off, the texts can be read and not changed. On at first.
    virtual void setEditable(bool editable) = 0;
};

} // namespace Overcurrent
