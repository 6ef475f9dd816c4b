#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <string>

namespace KesProgram {

/// The name of the open archive file. GUI thread.
class KES_EXPORT IStatusBarFileView : public Kes::IView {
public:
    /// An empty name leaves the area blank.
    virtual void setFileName(const std::string& name) = 0;
};

} // namespace KesProgram
