#pragma once

#include <Overcurrent/data/ResultRow.h>

#include <KesCommonView/IView.h>

#include <string>

namespace Overcurrent {

/// How far the test is and how it ended, readable from the other side of the bench. GUI thread.
class IOutcomeView : public Kes::IView {
public:
    virtual void setOutcome(const std::string& text, Mark mark) = 0;
    /// Where the results come from; a warning is shown unless that is a real device.
    virtual void setOrigin(Origin origin) = 0;
    /// Whether the results belong to other settings than those shown.
    virtual void setStale(bool stale) = 0;
    /// From 0 to 1.
    virtual void setProgress(double share) = 0;
    /// Whether a test is under way: the progress is shown.
    virtual void setRunning(bool running) = 0;
};

} // namespace Overcurrent
