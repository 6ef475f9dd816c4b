#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/BackgroundJobs.h>
#include <KesDevice/view/DeviceIdentification.h>
#include <KesDevice/view/HardwareDraft.h>
#include <KesDevice/view/IDeviceSearchView.h>

#include <memory>
#include <vector>

namespace KesDevice {

/// Adds devices to a draft, by address or from a search in the network, and has them identified. GUI thread;
/// the search runs on a thread of its own.
class KES_EXPORT DeviceSearchPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    DeviceSearchPresenter(HardwareDraft& draft, DeviceIdentification& identification, BackgroundJobs& jobs);
    ~DeviceSearchPresenter() override;

    Kes::IView* getView() override { return _view.get(); }

    void focusAddress() { _view->focusAddress(); }
    /// Adds the address that is still in its field; true when there is none, or it has been accepted.
    bool addPending();

private:
    void _onAdd();
    void _onAddFound(std::size_t index);
    void _onSearch();
    void _onFound(std::vector<Kesto::Address> found);
    void _showSearch();
    bool _add(const std::string& address);

    HardwareDraft& _draft;
    DeviceIdentification& _identification;
    BackgroundJobs& _jobs;
    std::unique_ptr<IDeviceSearchView> _view;
    std::vector<Kesto::Address> _found;
    bool _isSearching = false;
    /// The key of the text about the search; empty before the first one.
    std::string _status;
    std::shared_ptr<Kes::LifetimeToken> _token = std::make_shared<Kes::LifetimeToken>();
};

} // namespace KesDevice
