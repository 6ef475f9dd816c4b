#pragma once

#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>
#include <KesCommonView/IView.h>
#include <KesMeasure/ScreenNumber.h>

#include <gtkmm/label.h>

#include <optional>

//! [view]
/// The measured time in milliseconds, as a sentence. GUI thread.
class TimeView : public Gtk::Label, public Kes::IView {
public:
    TimeView() { set_size_request(480, 240); }

    void setTime(std::optional<double> time)
    {
        static constexpr lng::Text closed{"Pulse.closed", "The contact closed after %s ms.",
                                          "Контакт замкнулся через %s мс."};
        static constexpr lng::Text nothing{"Pulse.nothing", "Nothing has been measured yet.",
                                           "Измерений ещё не было."};
        // Three decimals, and a comma before them in Russian.
        set_text(time ? Kes::StringHelper::format(closed.get(), KesMeasure::ScreenNumber::fixed(*time, 3))
                      : nothing.get());
    }
};
//! [view]
