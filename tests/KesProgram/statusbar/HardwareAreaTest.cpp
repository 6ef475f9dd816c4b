#include "StatusBarTest.h"

#include <KesCommon/Language.h>
#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>
#include <KesProgram/views/StatusBarSyncView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;

class HardwareAreaTest : public StatusBarTest {
protected:
    HardwareAreaTest() { model.init(); }

    void show()
    {
        area = std::make_unique<KesProgram::StatusBarHardwarePresenter>(model);
        window.add(view());
        window.show_all();
    }

    Gtk::Widget& view() { return dynamic_cast<Gtk::Widget&>(*area->getView()); }

    std::vector<std::string> addresses()
    {
        std::vector<std::string> texts;
        for (auto* label : findWidgets<KesProgram::StatusBarHardwareKestoStateView>(view()))
            texts.push_back(label->get_text());
        return texts;
    }

    /// Whether the user reads the text somewhere in the area.
    bool isRead(const std::string& text)
    {
        const auto labels = findWidgets<Gtk::Label>(view());
        return std::ranges::any_of(
            labels, [&](auto* label) { return label->get_mapped() && label->get_text() == text; });
    }

    bool isAuxDCShown()
    {
        const auto* icon = findByClass(view(), "AuxDcWhiteImage");
        return icon && icon->get_mapped();
    }

    KesProgram::StatusBarSyncView& sync()
    {
        return *findWidgets<KesProgram::StatusBarSyncView>(view()).at(0);
    }
    std::string syncName() { return findWidgets<Gtk::Label>(sync()).back()->get_text(); }

    /// What the row with the focus is called, and whether all of it can be seen.
    std::pair<std::string, bool> focused()
    {
        auto* row = window.get_focus();
        if (!row)
            return {};
        auto& rows = *findWidgets<Gtk::ScrolledWindow>(view()).at(0);
        int x = 0, y = 0;
        row->translate_coordinates(rows, 0, 0, x, y);
        return {row->get_accessible()->get_name(), y >= 0 && y + row->get_height() <= rows.get_height()};
    }

    StatusModel model;
    Gtk::Window window;
    std::unique_ptr<KesProgram::StatusBarHardwarePresenter> area;
};

TEST_F(HardwareAreaTest, FollowsTheConfigurationAndItsDevices)
{
    show();
    EXPECT_THAT(addresses(), ElementsAre());
    auto next = makeHardware(2);
    next->getSyncManager().setActiveMode(KesDevice::SyncModeKind::GPS);
    setHardware(std::move(next));
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
    EXPECT_EQ(syncName(), KesDevice::SyncMode::get(KesDevice::SyncModeKind::GPS).getShortName());
    EXPECT_TRUE(sync().get_sensitive());
    // On another thread the change is complete before the old configuration dies with its devices.
    onAnotherThread([&] { setHardware(makeHardware(1)); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1"));
    EXPECT_EQ(syncName(), KesDevice::SyncMode::get(KesDevice::SyncModeKind::None).getShortName());
    EXPECT_FALSE(sync().get_sensitive()) << "there is nothing to tell";
    onAnotherThread([&] { addKesto(*KesDevice::HardwareControl::getInstance(), 2); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
    onAnotherThread([&] { EXPECT_TRUE(KesDevice::HardwareControl::getInstance()->getKestos().removeAt(0)); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.2"));
}

TEST_F(HardwareAreaTest, ADeviceIsShownWithItsTypeOnceItIsKnownAndWithItsSupply)
{
    auto hardware = DefaultHardware::create();
    auto* kesto = hardware->getKestos().getItems().front();
    ASSERT_TRUE(kesto->auxDC().set(true, 24.0));
    setHardware(std::move(hardware));
    show();
    EXPECT_TRUE(waitFor([this] { return isAuxDCShown(); })) << "on before the row was there";
    EXPECT_TRUE(isRead(kesto->getAddress().to_string()));
    EXPECT_FALSE(isRead("KESTO-3"));
    onAnotherThread([kesto] { EXPECT_TRUE(kesto->connect()); });
    EXPECT_TRUE(waitFor([this] { return isRead("KESTO-3"); }));
    onAnotherThread([kesto] { EXPECT_TRUE(kesto->auxDC().set(false, 24.0)); });
    EXPECT_TRUE(waitFor([this] { return !isAuxDCShown(); }));
    // Rows that come later are seen as well.
    onAnotherThread([] { setHardware(makeHardware(2)); });
    EXPECT_TRUE(waitFor([this] { return isRead("10.0.0.1") && isRead("10.0.0.2"); }));
}

TEST_F(HardwareAreaTest, ManyRowsScrollAndEachIsReachedByKeyboard)
{
    show();
    std::set<int> heights;
    for (const unsigned count : {1u, 4u, 20u}) {
        setHardware(makeHardware(count));
        int least = 0, natural = 0;
        view().get_preferred_height(least, natural);
        heights.insert(least);
        EXPECT_LE(natural, 120) << count << " devices";
    }
    EXPECT_EQ(heights.size(), 1u) << "the window grows with the devices";

    const auto rows = findWidgets(
        view(), [](Gtk::Widget& widget) { return widget.get_style_context()->has_class("deviceRow"); });
    ASSERT_TRUE(waitFor([&] { return window.get_mapped() && rows.back()->get_allocation().get_y() > 0; }));
    window.unset_focus();
    for (int number = 1; number <= 20; ++number) {
        window.child_focus(Gtk::DIR_TAB_FORWARD);
        const std::string name = "KESTO, 10.0.0." + std::to_string(number) + ", State unknown";
        ASSERT_TRUE(waitFor([&] { return focused() == std::pair(name, true); })) << name;
    }
}

TEST_F(HardwareAreaTest, ARowSaysItsStateInWordsAndByItsStyle)
{
    const struct {
        lng::Language language;
        Kes::Nullable<std::string> state;
        const char* name;
        const char* remark;
        const char* tooltip;
        const char* style;
    } cases[] = {
        {lng::English, {}, "KESTO, 10.0.0.1, State unknown", "State unknown", "", "stateUndefined"},
        {lng::English, std::string("No cooling"), "KESTO, 10.0.0.1, No cooling", "No cooling", "No cooling",
         "stateError"},
        {lng::English, std::string("KESTO 10.0.0.1 is lost"), "KESTO 10.0.0.1 is lost",
         "KESTO 10.0.0.1 is lost", "KESTO 10.0.0.1 is lost", "stateError"},
        {lng::English, std::string(), "KESTO, 10.0.0.1, Ready for operation", "", "Ready for operation", ""},
        {lng::Russian,
         {},
         "КЕСТО, 10.0.0.1, Состояние неизвестно",
         "Состояние неизвестно",
         "",
         "stateUndefined"},
        {lng::Russian, std::string(), "КЕСТО, 10.0.0.1, Готово к работе", "", "Готово к работе", ""}};
    for (const auto& expected : cases) {
        lng::language = expected.language;
        area.reset();
        setHardware(makeHardware(1));
        show();
        auto& row = *findByClass(view(), "deviceRow");
        auto& remark = dynamic_cast<Gtk::Label&>(*findByClass(view(), "deviceRemark"));
        auto& state = *findWidgets<KesProgram::StatusBarHardwareKestoStateView>(view()).at(0);
        const auto shown = [&] {
            const auto style = state.get_style_context();
            return std::vector<std::string>{row.get_accessible()->get_name(), remark.get_text(),
                                            state.get_tooltip_text(),
                                            std::string(style->has_class("stateError") ? "stateError" : "") +
                                                (style->has_class("stateUndefined") ? "stateUndefined" : "")};
        };
        auto& signal = (*KesDevice::HardwareControl::getInstance()->getKestos().lease().begin())
                           ->signalOperationErrorChanged;
        const auto before = shown();
        std::thread([&] { signal.emit(expected.state); }).join();
        EXPECT_EQ(shown(), before) << "the widgets were touched on the device's thread";
        const std::vector<std::string> then{expected.name, expected.remark, expected.tooltip, expected.style};
        EXPECT_TRUE(waitFor([&] { return shown() == then; })) << expected.name;
        EXPECT_EQ(isSeen(remark), *expected.remark != 0) << expected.name;
        // At once on the GUI thread, and not overtaken by what is still queued.
        std::thread([&] { signal.emit({}); }).join();
        signal.emit(expected.state);
        runPendingEvents();
        EXPECT_EQ(shown(), then);
    }
}

TEST_F(HardwareAreaTest, AStateThatTakesSeveralLinesIsSeenWhole)
{
    setHardware(makeHardware(1));
    show();
    (*KesDevice::HardwareControl::getInstance()->getKestos().lease().begin())
        ->signalOperationErrorChanged.emit(std::string("Cooling fan has failed"));
    auto& rows = *findWidgets<Gtk::ScrolledWindow>(view()).at(0);
    int narrow = 0, natural = 0, least = 0, needed = 0, given = 0;
    rows.get_preferred_width(narrow, natural);
    rows.get_child()->get_preferred_height_for_width(narrow, least, needed);
    rows.get_preferred_height_for_width(narrow, least, given);
    EXPECT_EQ(given, needed);
}

TEST_F(HardwareAreaTest, LocalConfigurationOfTheProgramIsShown)
{
    setHardware(makeHardware(2));
    StatusModel local;
    local.isLocal = true;
    local.init();
    area = std::make_unique<KesProgram::StatusBarHardwarePresenter>(local);
    addKesto(*local.getHardware(), 7);
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.7"));
    onAnotherThread([&] {
        auto next = makeHardware(1);
        local.setHardware(next, false);
    });
    addKesto(*local.getHardware(), 8);
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.8")) << "a new configuration begins without devices";
    area.reset();
}

/// Everything at once: two threads change the hardware while the window redraws and the area comes and goes.
TEST_F(HardwareAreaTest, SurvivesChangesFromAllSides)
{
    show();
    std::atomic<int> running{2};
    std::thread replacing([&] {
        for (unsigned i = 0; i < 60; ++i)
            setHardware(makeHardware(i % 4));
        --running;
    });
    std::thread changing([&] {
        // The gate keeps the configuration from being replaced meanwhile.
        for (unsigned i = 0; i < 300; ++i) {
            const Kes::SignalGate::Guard gate;
            auto& hardware = *KesDevice::HardwareControl::getInstance();
            auto& added = addKesto(hardware, i % 200 + 50);
            added.signalOperationErrorChanged.emit(Kes::Nullable<std::string>("error"));
            added.auxDC().signalEnableChanged.emit(true);
            (void)hardware.getKestos().removeAt(0);
        }
        --running;
    });
    const auto renew = [&, round = 0]() mutable {
        if (++round % 10 == 0) {
            area.reset();
            show();
        }
        return running == 0;
    };
    EXPECT_TRUE(waitFor(renew, std::chrono::seconds(60)));
    replacing.join();
    changing.join();
    setHardware(makeHardware(2));
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
}

} // namespace
