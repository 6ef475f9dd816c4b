#include "support/GuiTest.h"
#include "support/LiveWidgets.h"

#include <KesCommonView/CollectionBoxView.h>
#include <KesProgram/views/FileMenuView.h>
#include <KesProgram/views/FileRecentMenuView.h>
#include <KesProgram/views/HardwareControlToolbarView.h>
#include <KesProgram/views/HelpMenuView.h>
#include <KesProgram/views/ProgramMainMenuView.h>
#include <KesProgram/views/ProgramStatusBarView.h>
#include <KesProgram/views/ProgramView.h>
#include <KesProgram/views/StatusBarFileView.h>
#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>
#include <KesProgram/views/StatusBarHardwareKestoView.h>
#include <KesProgram/views/StatusBarHardwareView.h>
#include <KesProgram/views/StatusBarInfoView.h>
#include <KesProgram/views/StatusBarSyncView.h>
#include <KesProgram/views/ToolsToolbarView.h>

#include <numeric>
#include <random>

namespace {

using namespace KesTest;
using namespace KesProgram;

/// A whole window, each of whose views can be destroyed on its own.
class Shell {
public:
    Shell()
    {
        auto& window = make<ProgramView>();
        auto& header = make<ProgramMainMenuView>();
        auto& fileMenu = make<FileMenuView>();
        auto& recent = make<FileRecentMenuView>();
        auto& tools = make<ToolsToolbarView>();
        auto& footer = make<ProgramStatusBarView>();
        auto& hardware = make<StatusBarHardwareView>();
        auto& collection = make<Kes::CollectionBoxView>();
        auto& row = make<StatusBarHardwareKestoView>();
        auto& icons = make<StatusBarHardwareKestoIconsView>();

        recent.setFileCollection({"a", "b"});
        auto* recentItem = Gtk::make_managed<Gtk::MenuItem>("Recent");
        recentItem->set_submenu(recent);
        fileMenu.get_submenu()->append(*recentItem);
        tools.showTestObjectCommand(true);
        icons.setAuxDCEnabled(true);

        header.addMenu(&fileMenu);
        header.addMenu(&make<HelpMenuView>());
        header.addToolbar(&make<HardwareControlToolbarView>());
        header.addToolbar(&tools);
        row.setState(&make<StatusBarHardwareKestoStateView>());
        row.setIcons(&icons);
        collection.insertView(0, &row);
        hardware.setKestoCollection(&collection);
        hardware.setSyncView(&make<StatusBarSyncView>());
        footer.setInfoArea(&make<StatusBarInfoView>());
        footer.setArchiveArea(&make<StatusBarFileView>());
        footer.setHardwareArea(&hardware);
        window.setHeader(header);
        window.setContent(make<LabelView>());
        window.setFooter(footer);
        window.open(nullptr, false);
        EXPECT_TRUE(waitFor([&] { return window.get_mapped(); }));
    }

    std::size_t size() const { return _views.size(); }
    void destroy(std::size_t index) { _views[index].reset(); }

private:
    template <typename View>
    View& make()
    {
        auto view = std::make_shared<View>();
        _views.push_back(view);
        return *view;
    }

    std::vector<std::shared_ptr<void>> _views;
};

class ViewLifetimeTest : public GuiTest {};

// Presenters die in an order of their own: none may leave a widget behind or free one twice.
TEST_F(ViewLifetimeTest, ViewsDieInAnyOrder)
{
    std::mt19937 random(1);
    for (int round = 0; round < 12; ++round) {
        const auto windows = countWindows();
        LiveWidgets live;
        Shell shell;
        std::vector<std::size_t> order(shell.size());
        std::iota(order.begin(), order.end(), 0u);
        if (round > 0)
            std::shuffle(order.begin(), order.end(), random);

        EXPECT_GT(live.getCount(), 40);
        for (const auto index : order) {
            shell.destroy(index);
            runPendingEvents();
        }
        EXPECT_TRUE(waitFor([&] { return live.getCount() == 0; }, std::chrono::seconds(2)))
            << live.getCount() << " widgets left in round " << round;
        EXPECT_EQ(countWindows(), windows);
    }
}

} // namespace
