#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/BackgroundJobs.h>
#include <KesDevice/view/DeviceIdentification.h>
#include <KesDevice/view/DeviceSearchView.h>
#include <KesDevice/view/HardwareDraft.h>
#include <KesDriver/IKestoNetwork.h>

#include <map>
#include <memory>
#include <stop_token>
#include <string>

namespace KesDevice {

/// Adds devices to a draft, by address or from a search in the network, and has them identified. GUI thread;
/// the search runs on a thread of its own, and ends when the presenter dies.
///
/// An address is refused, with the reason beside it, when no device can have it or the draft has it already.
/// Of what a search finds, 256 devices are shown; there is one search at a time, and a new one forgets what
/// the last one found.
class KES_EXPORT DeviceSearchPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// All three outlive the presenter.
    DeviceSearchPresenter(HardwareDraft& draft, DeviceIdentification& identification, BackgroundJobs& jobs);
    ~DeviceSearchPresenter() override;

    Kes::IView* getView() override { return _view.get(); }

    /// For a window that has just been opened.
    void focusAddress() { _view->focusAddress(); }
    /// Adds the address that is still in its field; true when there is none, or it has been accepted.
    /// Otherwise the focus is on the field. To be asked before the draft is taken.
    bool addPending();

private:
    void _onAdd();
    void _onAddFound(const std::string& address);
    void _onSearch();
    void _onFound(const KesDriver::FoundDevice& found);
    void _onSearched(const Kes::Result& result);
    void _showSearch();
    bool _add(const std::string& address);

    HardwareDraft& _draft;
    DeviceIdentification& _identification;
    BackgroundJobs& _jobs;
    std::unique_ptr<DeviceSearchView> _view;
    /// In the order of the addresses, as the view has them.
    std::map<Kesto::Address, KesDriver::FoundDevice> _found;
    /// There are more than can be shown.
    bool _isCut = false;
    /// What the search reports is shown from the main loop.
    sigc::connection _showing;
    bool _isSearching = false;
    /// The key of the text about the search; empty before the first one.
    std::string _status;
    std::string _problem;
    std::stop_source _stop;
    std::shared_ptr<Kes::LifetimeToken> _token = std::make_shared<Kes::LifetimeToken>();
};

} // namespace KesDevice
