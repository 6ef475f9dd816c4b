#pragma once

#include <KesCommonView/IView.h>

#include <string>

namespace Kes {

/// A program as the starter of programs sees it: `main` of a program of its own, or a window of another
/// program that opens this one. GUI thread.
class KES_EXPORT IKesShell {
public:
    virtual ~IKesShell();

    /// Shows the program's window. `parent` is the view of the window that opens it, null for a program
    /// of its own. A second call shows the window again.
    virtual void open(IView* parent) = 0;

    /// Opens a file of the program, given on the command line or by the window that opened it. Called after
    /// `open`. The program asks its own questions and reports its own errors.
    virtual void openFile(const std::string& fileName) = 0;

    /// The version of the package that the program was installed with, shown in the about window.
    virtual void setPackageVersion(const std::string& version) = 0;

    /// Null before the first `open`.
    virtual IView* getView() = 0;
};

} // namespace Kes
