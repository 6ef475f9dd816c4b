#include <KesDevice/view/DeviceSearchPresenter.h>

#include <KesDevice/view/DeviceSearchView.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <utility>

namespace KesDevice {

DeviceSearchPresenter::DeviceSearchPresenter(HardwareDraft& draft, DeviceIdentification& identification,
                                             BackgroundJobs& jobs)
    : _draft(draft), _identification(identification), _jobs(jobs), _view(std::make_unique<DeviceSearchView>())
{
    _view->signalAdd.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onAdd));
    _view->signalAddressEdited.connect(sigc::bind(sigc::mem_fun(*_view, &IDeviceSearchView::setProblem), ""));
    _view->signalSearch.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onSearch));
    _view->signalAddFound.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onAddFound));
    _draft.signalChanged.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_showSearch));
    _showSearch();
}

DeviceSearchPresenter::~DeviceSearchPresenter() = default;

bool DeviceSearchPresenter::addPending()
{
    const auto typed = _view->getAddress();
    if (typed.find_first_not_of(" \t") == std::string::npos)
        return true;
    if (_add(typed))
        return true;
    _view->focusAddress();
    return false;
}

bool DeviceSearchPresenter::_add(const std::string& address)
{
    Kesto::Address read;
    const auto result = _draft.checkAddress(address, read);
    if (!result) {
        _view->setProblem(result.getError()->getMessage());
        return false;
    }
    (void)_draft.add(address);
    _view->clearAddress();
    _identification.identify(read);
    return true;
}

void DeviceSearchPresenter::_onAdd()
{
    if (_add(_view->getAddress()))
        _view->focusAddress();
}

void DeviceSearchPresenter::_onAddFound(std::size_t index)
{
    if (index >= _found.size() || _draft.contains(_found[index]))
        return;
    (void)_draft.add(_found[index].to_string());
    _identification.identify(_found[index]);
}

void DeviceSearchPresenter::_onSearch()
{
    if (std::exchange(_isSearching, true))
        return;
    _status = "Search.running";
    const bool isBegun = _jobs.run("KesSearch", _token, [this, network = _draft.getNetwork()] {
        return [this, found = network->find()] { _onFound(found); };
    });
    if (!isBegun) {
        _isSearching = false;
        _status = "Jobs.refused";
    }
    _showSearch();
}

void DeviceSearchPresenter::_onFound(std::vector<Kesto::Address> found)
{
    _found = std::move(found);
    _isSearching = false;
    _status = _found.empty() ? "Search.nothing" : "Search.found";
    _showSearch();
}

void DeviceSearchPresenter::_showSearch()
{
    DeviceSearchState state;
    state.isRunning = _isSearching;
    for (const auto& address : _found)
        state.found.push_back({address.to_string(), _draft.contains(address)});
    if (!_status.empty())
        state.status = lng::DeviceView::get(_status);
    _view->setSearch(state);
}

} // namespace KesDevice
