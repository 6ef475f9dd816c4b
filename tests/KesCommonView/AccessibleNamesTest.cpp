#include "support/GuiTest.h"

#include <KesCommonView/GtkWidgetHelper.h>

#include <atk/atk.h>
#include <gtkmm/comboboxtext.h>

namespace {

class AccessibleNamesTest : public KesTest::GuiTest {};

void collectFocusable(GtkWidget* widget, void* found)
{
    if (gtk_widget_get_can_focus(widget))
        static_cast<std::vector<GtkWidget*>*>(found)->push_back(widget);
    else if (GTK_IS_CONTAINER(widget))
        gtk_container_forall(GTK_CONTAINER(widget), &collectFocusable, found);
}

TEST_F(AccessibleNamesTest, whatHasTheFocusOfAComboBoxTellsItsNameAndChoice)
{
    Gtk::Window window;
    Gtk::ComboBoxText combo;
    combo.append("None");
    combo.append("GPS");
    Kes::GtkWidgetHelper::setAccessibleName(combo, "Mode");
    window.add(combo);
    window.show_all();

    std::vector<GtkWidget*> focusable;
    gtk_container_forall(GTK_CONTAINER(combo.gobj()), &collectFocusable, &focusable);
    ASSERT_EQ(focusable.size(), 1u);
    const auto getName = [&] { return std::string(atk_object_get_name(gtk_widget_get_accessible(focusable[0]))); };
    EXPECT_EQ(getName(), "Mode");
    combo.set_active(1);
    EXPECT_EQ(getName(), "Mode: GPS");
}

} // namespace
