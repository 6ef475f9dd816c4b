#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/label.h>

#include <string>

namespace KesTest {

/// A view that can be placed.
struct LabelView : Gtk::Label, Kes::IView {
    explicit LabelView(const std::string& text = {}) : Gtk::Label(text) {}
};

/// A view that cannot.
struct NoWidgetView : Kes::IView {};

} // namespace KesTest
