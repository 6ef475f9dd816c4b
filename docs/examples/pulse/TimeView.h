#pragma once

#include <KesCommon/StringHelper.h>
#include <KesCommonView/IView.h>
#include <KesProgram/text/TextPair.h>

#include <gtkmm/label.h>

#include <optional>

//! [view]
/// The measured time in milliseconds, as a sentence. GUI thread.
class TimeView : public Gtk::Label, public Kes::IView {
public:
    TimeView() { set_size_request(480, 240); }

    void setTime(std::optional<double> time)
    {
        if (time)
            set_text(Kes::StringHelper::format(
                lng::choose({"The contact closed after %.3f ms.", "Контакт замкнулся через %.3f мс."}),
                *time));
        else
            set_text(lng::choose({"Nothing has been measured yet.", "Измерений ещё не было."}));
    }
};
//! [view]
