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

} // namespace KesTest
