#pragma once

#include <KesCommon/Nullable.h>
#include <KesCommonView/IView.h>

#include <string>

namespace Kes {

/// A short text with a verdict: valid, invalid or unknown. A view may show the verdict by a colour only, so
/// the text has to say it as well. GUI thread.
class KES_EXPORT IResultStateView : public IView {
public:
    virtual void setText(const std::string& text) = 0;
    /// More about the state, shown on demand (a tooltip).
    virtual void setExtendedText(const std::string& text) = 0;
    /// No value: the state is unknown.
    virtual void setIsValid(const Nullable<bool>& valid) = 0;
};

} // namespace Kes
