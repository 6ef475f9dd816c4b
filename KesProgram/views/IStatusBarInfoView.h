#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <string>

namespace KesProgram {

/// The line that says what the program is doing.
class KES_EXPORT IStatusBarInfoView : public Kes::IView {
public:
    /// Any thread: at once on the GUI thread, queued for it elsewhere.
    virtual void setInfo(const std::string& text) = 0;
};

} // namespace KesProgram
