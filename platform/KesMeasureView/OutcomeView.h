#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesMeasure/Outcome.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>

namespace KesMeasure {

/// How far the test is and how it ended, readable from the other side of the bench: one or two lines of large
/// text with the progress bar and the warnings. The parts are set one by one and know nothing of each other.
/// GUI thread.
class KES_EXPORT OutcomeView : public Gtk::Box, public Kes::IView {
public:
    OutcomeView();

    /// A longer text is cut; the tooltip has it whole. The mark gives the colour, and a sign before the text.
    void setOutcome(const Outcome& outcome);
    /// Where the results come from; a warning is shown unless that is a real device.
    void setOrigin(Origin origin);
    /// Whether the results belong to other settings than those shown.
    void setStale(bool stale);
    /// The share that is over, from 0 to 1, and the seconds that are left; shown while a test is under way.
    void setProgress(double share, double remaining);
    /// Whether a test is under way: the progress is shown. Not at first.
    void setRunning(bool running);

private:
    Gtk::Box _line;
    Gtk::Label _outcome;
    Gtk::ProgressBar _progress;
    Gtk::Label _origin;
    Gtk::Label _stale;
};

} // namespace KesMeasure
