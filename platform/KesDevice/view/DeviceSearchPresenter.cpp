#include <KesDevice/view/DeviceSearchPresenter.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/view/DeviceSearchView.h>
#include <KesDevice/view/detail/DeviceDescription.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <glibmm/main.h>

#include <utility>

namespace KesDevice {

namespace {

constexpr std::size_t mostFound = 256;

} // namespace

DeviceSearchPresenter::DeviceSearchPresenter(HardwareDraft& draft, DeviceIdentification& identification,
                                             BackgroundJobs& jobs)
    : _draft(draft), _identification(identification), _jobs(jobs), _view(std::make_unique<DeviceSearchView>())
{
    _view->signalAdd.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onAdd));
    _view->signalAddressEdited.connect(sigc::bind(sigc::mem_fun(*_view, &DeviceSearchView::setProblem), ""));
    _view->signalSearch.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onSearch));
    _view->signalAddFound.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_onAddFound));
    _draft.signalChanged.connect(sigc::mem_fun(*this, &DeviceSearchPresenter::_showSearch));
    _showSearch();
}

DeviceSearchPresenter::~DeviceSearchPresenter()
{
    _stop.request_stop();
    _showing.disconnect();
}

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

void DeviceSearchPresenter::_onAddFound(const std::string& address)
{
    Kesto::Address read;
    if (_draft.checkAddress(address, read) && _draft.add(address))
        _identification.identify(read);
}

void DeviceSearchPresenter::_onSearch()
{
    if (std::exchange(_isSearching, true))
        return;
    _found.clear();
    _isCut = false;
    _problem.clear();
    _status = "Search.running";
    auto work = [this, &jobs = _jobs, owner = std::weak_ptr(_token), network = _draft.getNetwork(),
                 stop = _stop.get_token()] {
        // The presenter may have died: only the GUI thread may look at it.
        const auto tell = [&](const KesDriver::FoundDevice& found) {
            jobs.report(owner, [this, found] { _onFound(found); });
        };
        return [this, result = network->find(tell, stop)] { _onSearched(result); };
    };
    if (!_jobs.run("KesSearch", _token, std::move(work))) {
        _isSearching = false;
        _status = "Jobs.refused";
    }
    _showSearch();
}

void DeviceSearchPresenter::_onFound(const KesDriver::FoundDevice& found)
{
    if (_found.size() == mostFound && !_found.contains(found.address)) {
        _isCut = true;
        return;
    }
    _found[found.address] = found;
    // Many at once are shown at once: a row takes its time.
    if (!_showing.connected())
        _showing = Glib::signal_idle().connect(
            sigc::bind_return(sigc::mem_fun(*this, &DeviceSearchPresenter::_showSearch), false));
}

void DeviceSearchPresenter::_onSearched(const Kes::Result& result)
{
    _isSearching = false;
    _status = _found.empty() ? "Search.nothing" : "Search.found";
    if (!result)
        _problem = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    else if (_isCut)
        _problem =
            Kes::StringHelper::format(lng::DeviceView::get("Search.tooMany"), std::to_string(mostFound));
    _showSearch();
}

void DeviceSearchPresenter::_showSearch()
{
    DeviceSearchState state;
    state.isRunning = _isSearching;
    state.problem = _problem;
    for (const auto& [address, found] : _found)
        state.found.push_back({address.to_string(), describeDevice(found.identifer, found.isSimulated),
                               describeUse(found.owner), _draft.contains(address)});
    if (!_status.empty())
        state.status = lng::DeviceView::get(_status);
    _view->setSearch(state);
}

} // namespace KesDevice
