#pragma once

#include <Overcurrent/data/ResultRow.h>

#include <KesCommonView/IView.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// The measured values: a table of the points, and pick-up, drop-off and ratio below it. GUI thread.
class IResultsView : public Kes::IView {
public:
    /// Rows that are already shown stay as they are; new ones are brought into sight.
    virtual void setRows(const std::vector<ResultRow>& rows) = 0;
    virtual void setValues(const std::vector<ResultValue>& values) = 0;
};

} // namespace Overcurrent
