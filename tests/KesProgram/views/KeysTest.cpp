#include "support/GuiTest.h"

#include <KesProgram/views/FileMenuView.h>
#include <KesProgram/views/HardwareControlToolbarView.h>
#include <KesProgram/views/HelpMenuView.h>

namespace {

using namespace KesTest;

class KeysTest : public GuiTest {
protected:
    KeysTest()
    {
        _bar.append(file);
        _bar.append(help);
        for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&_bar), static_cast<Gtk::Widget*>(&control),
                                    static_cast<Gtk::Widget*>(&entry)})
            _box.add(*widget);
        window.add(_box);
        window.show_all();
        entry.grab_focus();
        waitFor([this] { return window.get_mapped(); });
        record(file.signalNew, "new");
        record(file.signalOpen, "open");
        record(file.signalSave, "save");
        record(file.signalSaveAs, "save as");
        record(control.signalStart, "start");
        record(control.signalStop, "stop");
        record(help.signalHelp, "help");
    }

    void record(sigc::signal<void()>& signal, const std::string& name)
    {
        signal.connect([this, name] { commands.push_back(name); });
    }

    /// What the keys of all commands have done.
    std::vector<std::string> pressAll()
    {
        commands.clear();
        for (const unsigned key : {GDK_KEY_n, GDK_KEY_o, GDK_KEY_s})
            pressKey(window, key, GDK_CONTROL_MASK);
        pressKey(window, GDK_KEY_S, GDK_CONTROL_MASK | GDK_SHIFT_MASK);
        for (const unsigned key : {GDK_KEY_F5, GDK_KEY_Escape, GDK_KEY_F1})
            pressKey(window, key);
        return commands;
    }

    Gtk::Window window;
    KesProgram::FileMenuView file;
    KesProgram::HelpMenuView help;
    KesProgram::HardwareControlToolbarView control;
    Gtk::Entry entry;
    std::vector<std::string> commands;

private:
    Gtk::MenuBar _bar;
    Gtk::Box _box{Gtk::ORIENTATION_VERTICAL};
};

TEST_F(KeysTest, KeysReachTheCommandsThatAreOnWhereverTheFocusIs)
{
    using Commands = std::vector<std::string>;
    EXPECT_EQ(pressAll(), (Commands{"new", "open", "save", "save as", "start", "help"}));
    file.setEnabledNew(false);
    file.setEnabledOpen(false);
    control.setCanStart(false);
    control.setCanStop(true);
    window.unset_focus();
    EXPECT_EQ(pressAll(), (Commands{"save", "save as", "stop", "help"}));
    EXPECT_EQ(entry.get_text(), "") << "the keys are no input";
    for (auto* item : findWidgets<Gtk::MenuItem>(file))
        EXPECT_EQ(item->get_label().raw().find("Ctrl"), std::string::npos) << "texts stay as they are";
}

TEST_F(KeysTest, StartAndStopHaveTheirKeysWhereTheToolbarHasNoRoomForThem)
{
    waitFor([this] { return control.get_width() > 1; });
    Gtk::Allocation narrow(0, 0, 16, control.get_height());
    control.size_allocate(narrow);
    for (const char* picture : {"ToolStartImage", "ToolStopImage"})
        ASSERT_FALSE(findByClass(control, picture)->get_mapped()) << picture;
    commands.clear();
    pressKey(window, GDK_KEY_F5);
    control.setCanStop(true);
    pressKey(window, GDK_KEY_Escape);
    EXPECT_EQ(commands, (std::vector<std::string>{"start", "stop"}));
}

TEST_F(KeysTest, KeysGoWithTheirViewToAnotherWindow)
{
    Gtk::Window other;
    auto& box = *control.get_parent();
    const auto pressStart = [&](Gtk::Window& pressed) {
        commands.clear();
        pressKey(pressed, GDK_KEY_F5);
        return commands.size();
    };
    box.remove(control);
    other.add(control);
    other.show_all();
    ASSERT_TRUE(waitFor([&] { return other.get_mapped(); }));
    EXPECT_EQ(pressStart(window), 0u);
    EXPECT_EQ(pressStart(other), 1u);
    other.remove();
    box.add(control);
    EXPECT_EQ(pressStart(other), 0u);
    EXPECT_EQ(pressStart(window), 1u) << "at once, for whoever presses it while the window appears";
}

TEST_F(KeysTest, AKeyIsTheSameWithCapsLock)
{
    GdkEventKey event{};
    event.keyval = GDK_KEY_S;
    event.state = GDK_CONTROL_MASK | GDK_LOCK_MASK;
    EXPECT_TRUE(KesProgram::Keys::saveFile.matches(event));
    EXPECT_FALSE(KesProgram::Keys::saveFileAs.matches(event));
    event.state |= GDK_SHIFT_MASK;
    EXPECT_TRUE(KesProgram::Keys::saveFileAs.matches(event));
}

TEST_F(KeysTest, NoWindowStandsBetweenTheKeyboardAndStop)
{
    const struct {
        bool isModal;
        bool canStop;
        guint key, state;
        bool stops;
    } presses[] = {{true, true, GDK_KEY_Escape, 0, true},
                   {true, false, GDK_KEY_Escape, 0, false},
                   {false, true, GDK_KEY_Escape, 0, false},
                   {false, true, GDK_KEY_F5, GDK_SHIFT_MASK, true},
                   {true, true, GDK_KEY_F5, GDK_SHIFT_MASK, true},
                   {true, false, GDK_KEY_F5, GDK_SHIFT_MASK, false},
                   {true, true, GDK_KEY_Escape, GDK_CONTROL_MASK, false}};
    for (const auto& press : presses) {
        Gtk::Dialog other("", window, press.isModal);
        bool isAnswered = false;
        other.signal_response().connect([&](int) { isAnswered = true; });
        other.show();
        ASSERT_TRUE(waitFor([&] { return other.get_mapped(); }));
        control.setCanStop(press.canStop);
        commands.clear();
        pressKey(other, press.key, press.state);
        runPendingEvents();
        EXPECT_EQ(commands, std::vector<std::string>(press.stops ? 1 : 0, "stop")) << &press - presses;
        EXPECT_EQ(isAnswered, !press.stops && press.key == GDK_KEY_Escape && press.state == 0)
            << &press - presses;
    }
}

TEST_F(KeysTest, StartAndStopAnnounceThemselvesWhenTheyAreSwitched)
{
    std::vector<std::string> told;
    for (auto* button : findWidgets<Gtk::Button>(control)) {
        const auto accessible = button->get_accessible();
        accessible->signal_state_change().connect([&told, accessible](const Glib::ustring& state, bool on) {
            if (state == "sensitive" || state == "enabled")
                told.push_back(accessible->get_name() + (on ? " +" : " -") + state);
        });
    }
    control.setCanStart(false);
    control.setCanStop(true);
    EXPECT_THAT(told, testing::UnorderedElementsAre("Start -sensitive", "Start -enabled", "Stop +sensitive",
                                                    "Stop +enabled"));
}

TEST_F(KeysTest, AStartThatFailsDoesNotKeepTheKeyboard)
{
    pressKey(window, GDK_KEY_F5);
    EXPECT_EQ(window.get_focus(), nullptr) << "the entry has it still";
    auto& start = *findWidgets<Gtk::Button>(control).at(0);
    start.grab_focus();
    start.clicked();
    EXPECT_EQ(window.get_focus(), nullptr);

    start.grab_focus();
    control.setCanStart(false);
    entry.grab_focus(); // as the window gives it to something else
    control.setCanStop(true);
    auto& stop = *findWidgets<Gtk::Button>(control).at(1);
    EXPECT_TRUE(stop.is_focus());
    control.setCanStop(false);
    window.unset_focus();
    control.setCanStop(true);
    EXPECT_TRUE(stop.is_focus()) << "nobody else has it";
}

} // namespace
