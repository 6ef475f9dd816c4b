#pragma once

#include "support/GuiTest.h"

#include <KesCommon/Language.h>
#include <KesCommonView/IView.h>

#include <atkmm/object.h>
#include <gmock/gmock.h>
#include <gtkmm.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace KesTest {

/// A view that can be placed.
struct LabelView : Gtk::Label, Kes::IView {
    explicit LabelView(const std::string& text = {}) : Gtk::Label(text) {}
};

/// A view that cannot.
struct NoWidgetView : Kes::IView {};

/// The numbers, from 0, of the signals that are emitted from now on.
template <typename... Signals>
std::shared_ptr<std::vector<int>> recordEmissions(Signals&... signals)
{
    const auto emitted = std::make_shared<std::vector<int>>();
    int number = 0;
    (signals.connect([emitted, own = number++] { emitted->push_back(own); }), ...);
    return emitted;
}

} // namespace KesTest
