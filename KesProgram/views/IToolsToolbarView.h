#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool buttons of the test object and the report. GUI thread.
class KES_EXPORT IToolsToolbarView : public Kes::IView {
public:
    sigc::signal<void()> signalTestObject;
    sigc::signal<void()> signalReport;

    /// Whether the test object button is there; it is not at first.
    virtual void showTestObjectCommand(bool show) = 0;
    /// Whether the report button is there; it is at first.
    virtual void showReportCommand(bool show) = 0;
};

} // namespace KesProgram
