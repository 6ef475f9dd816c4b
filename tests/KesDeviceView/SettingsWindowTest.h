#pragma once

#include "support/Bench.h"
#include "support/GuiTest.h"

#include <KesDevice/view/HardwareManagerPresenter.h>

namespace KesTest {

inline KesDevice::Kesto::Address address(const std::string& text)
{
    return *KesDevice::Kesto::Address::parse(text);
}

/// The window for the devices of a configuration of its own.
class SettingsWindowTest : public GuiTest {
protected:
    SettingsWindowTest()
    {
        presenter->signalHardwareChanging.connect(
            [this](std::unique_ptr<KesDevice::HardwareManager>& changed) {
                ++confirmations;
                confirmed = std::move(changed);
            });
    }

    void open(bool local = true)
    {
        presenter->edit(nullptr, hardware.get(), local);
        ASSERT_TRUE(content());
        window = content()->get_toplevel();
        ASSERT_TRUE(waitFor([this] { return dynamic_cast<Gtk::Window*>(window)->is_active(); }));
    }
    Gtk::Widget* content() { return dynamic_cast<Gtk::Widget*>(presenter->getView()); }

    /// The seen widget of a type that assistive technology knows by the name.
    template <typename T>
    T* named(const std::string& name)
    {
        for (auto* widget : findWidgets<T>(*content()))
            if (isSeen(*widget) && widget->get_accessible()->get_name() == name)
                return widget;
        return nullptr;
    }
    void click(const std::string& name)
    {
        auto* button = named<Gtk::Button>(name);
        ASSERT_TRUE(button) << name;
        ASSERT_TRUE(button->is_sensitive()) << name;
        button->clicked();
    }
    Gtk::Entry& addressEntry() { return *named<Gtk::Entry>("Address of the device to add"); }
    void add(const std::string& text)
    {
        addressEntry().set_text(text);
        click("Add");
    }
    /// The texts that the user can read in the window, from top to bottom.
    std::vector<std::string> getTexts()
    {
        std::vector<std::string> texts;
        for (auto* label : findWidgets<Gtk::Label>(*content()))
            if (isSeen(*label))
                texts.push_back(label->get_text().raw());
        return texts;
    }
    /// In how many places the user can read the text.
    std::size_t count(const std::string& text)
    {
        return static_cast<std::size_t>(std::ranges::count_if(
            getTexts(), [&](const auto& shown) { return shown.find(text) != std::string::npos; }));
    }
    bool reads(const std::string& text) { return count(text) > 0; }
    void addHardware(const char* text) { ASSERT_TRUE(hardware->addKesto(address(text))); }

    /// KESTO-3 No. 00001 at 10.0.7.1
    BenchDevice device{1};
    std::unique_ptr<KesDevice::HardwareManager> hardware =
        KesDevice::HardwareManager::create(KesDriver::SimulatedNetwork::getEmbedded());
    std::unique_ptr<KesDevice::HardwareManager> confirmed;
    int confirmations = 0;
    std::unique_ptr<KesDevice::HardwareManagerPresenter> presenter =
        std::make_unique<KesDevice::HardwareManagerPresenter>();
    Gtk::Widget* window = nullptr;
};

} // namespace KesTest
