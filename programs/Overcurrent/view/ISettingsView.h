#pragma once

#include <Overcurrent/data/SettingsSummary.h>

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <vector>

namespace Overcurrent {

/// The test object's settings at a glance. GUI thread.
class ISettingsView : public Kes::IView {
public:
    /// The user wants to edit the test object.
    sigc::signal<void()> signalEdit;

    virtual void setLines(const std::vector<SettingsSummary::Line>& lines) = 0;
};

} // namespace Overcurrent
