#pragma once

#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>
#include <KesCommonView/IView.h>

#include <gtkmm/label.h>

#include <optional>

//! [view]
/// The measured time in milliseconds, as a sentence. GUI thread.
class TimeView : public Gtk::Label, public Kes::IView {
public:
    TimeView() { set_size_request(480, 240); }

    void setTime(std::optional<double> time)
    {
        static constexpr lng::Text closed{"Pulse.closed", "The contact closed after %.3f ms.",
                                          "Контакт замкнулся через %.3f мс."};
        static constexpr lng::Text nothing{"Pulse.nothing", "Nothing has been measured yet.",
                                           "Измерений ещё не было."};
        set_text(time ? Kes::StringHelper::format(closed.get(), *time) : nothing.get());
    }
};
//! [view]
