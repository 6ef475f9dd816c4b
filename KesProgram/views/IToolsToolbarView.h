#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool buttons of the test object and the report. A program that has no test object or writes no reports
/// hides the command; there is no state between shown and hidden. GUI thread.
class KES_EXPORT IToolsToolbarView : public Kes::IView {
public:
    /// The user asks for the window of the test object.
    sigc::signal<void()> signalTestObject;
    sigc::signal<void()> signalReport;

    /// Whether the test object button is there; it is not at first.
    virtual void showTestObjectCommand(bool show) = 0;
    /// Whether the report button is there; it is at first.
    virtual void showReportCommand(bool show) = 0;
};

} // namespace KesProgram
