#pragma once

#include <Overcurrent/view/IOutcomeView.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>

namespace Overcurrent {

/// The outcome as one or two lines of large text with the progress bar and the warnings. GUI thread.
class OutcomeView : public Gtk::Box, public IOutcomeView {
public:
    OutcomeView();

    void setOutcome(const std::string& text, Mark mark) override;
    void setOrigin(Origin origin) override;
    void setStale(bool stale) override;
    void setProgress(double share) override;
    void setRunning(bool running) override;

private:
    Gtk::Box _line;
    Gtk::Label _outcome;
    Gtk::ProgressBar _progress;
    Gtk::Label _origin;
    Gtk::Label _stale;
};

} // namespace Overcurrent
