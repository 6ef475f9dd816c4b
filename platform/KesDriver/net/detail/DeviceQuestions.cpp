#include <KesDriver/net/detail/DeviceQuestions.h>

#include <algorithm>
#include <array>
#include <utility>

namespace KesDriver {

/// One device, from the connection to its answer. Reports its end by `ended`, inside which it may be
/// destroyed; before that there is always one operation under way.
class DeviceQuestions::Dialogue {
public:
    Dialogue(const std::string& question, Answered answered)
        : _question(question), _answered(std::move(answered))
    {
        _client->set_enable_proxy(false);
        _timer = Glib::MainContext::get_thread_default()->signal_timeout().connect(
            [this] {
                cancel();
                return false;
            },
            static_cast<unsigned>(timeout.count()));
    }
    ~Dialogue() { _timer.disconnect(); }
    Dialogue(const Dialogue&) = delete;
    Dialogue& operator=(const Dialogue&) = delete;

    void start(const NetAddress& address, std::uint16_t port, std::function<void()> ended)
    {
        _ended = std::move(ended);
        const auto place = Gio::InetSocketAddress::create(
            Gio::InetAddress::create(address.getBytes().data(), Gio::SOCKET_FAMILY_IPV4), port);
        _client->connect_async(place, _cancellable, _next([this](auto& result) {
                                   _connection = _client->connect_finish(result);
                                   _send();
                               }));
    }
    void cancel() { _cancellable->cancel(); }
    /// Nobody wants to know the answer any more.
    void forget() { _answered = nullptr; }
    void tell() const
    {
        if (_answered)
            _answered(_answer);
    }

private:
    using Result = Glib::RefPtr<Gio::AsyncResult>;

    /// What comes after an operation; its failure is the end.
    template <typename Step>
    Gio::SlotAsyncReady _next(Step step)
    {
        return [this, step = std::move(step)](Result& result) {
            try {
                step(result);
            } catch (const Glib::Error&) {
                _end();
            }
        };
    }

    void _send()
    {
        const auto stream = _connection->get_output_stream();
        stream->write_all_async(_question.data(), _question.size(), _next([this, stream](auto& result) {
                                    gsize written = 0;
                                    stream->write_all_finish(result, written);
                                    _receive();
                                }),
                                _cancellable);
    }

    void _receive()
    {
        const auto stream = _connection->get_input_stream();
        stream->read_async(_buffer.data() + _received, _buffer.size() - _received,
                           _next([this, stream](auto& result) {
                               const auto count = stream->read_finish(result);
                               _take(count > 0 ? static_cast<std::size_t>(count) : 0);
                           }),
                           _cancellable);
    }

    void _take(std::size_t count)
    {
        const auto begin = _buffer.begin() + static_cast<std::ptrdiff_t>(_received);
        const auto end = begin + static_cast<std::ptrdiff_t>(count);
        _received += count;
        if (const auto lineEnd = std::find(begin, end, '\n'); lineEnd != end)
            _answer = std::string(_buffer.begin(), lineEnd);
        else if (count > 0 && _received < _buffer.size()) {
            _receive();
            return;
        }
        _end();
    }

    void _end() { std::exchange(_ended, nullptr)(); }

    const std::string& _question;
    Answered _answered;
    std::function<void()> _ended;
    const Glib::RefPtr<Gio::SocketClient> _client = Gio::SocketClient::create();
    const Glib::RefPtr<Gio::Cancellable> _cancellable = Gio::Cancellable::create();
    sigc::connection _timer;
    Glib::RefPtr<Gio::SocketConnection> _connection;
    std::array<char, longestAnswer> _buffer;
    std::size_t _received = 0;
    std::optional<std::string> _answer;
};

DeviceQuestions::DeviceQuestions(std::string question, std::uint16_t port)
    : _question(std::move(question)), _port(port)
{}

DeviceQuestions::~DeviceQuestions()
{
    _waiting.clear();
    for (auto& dialogue : _running) {
        dialogue.forget();
        dialogue.cancel();
    }
    // An operation that is cancelled still comes to its end, and uses the dialogue until then.
    while (!_running.empty())
        Glib::MainContext::get_thread_default()->iteration(true);
}

void DeviceQuestions::ask(const NetAddress& address, Answered answered)
{
    _waiting.push_back({address, std::move(answered)});
    _startNext();
}

void DeviceQuestions::_startNext()
{
    if (_waiting.empty() || _running.size() >= atATime)
        return;
    auto next = std::move(_waiting.front());
    _waiting.pop_front();
    const auto started = _running.emplace(_running.end(), _question, std::move(next.answered));
    started->start(next.address, _port, [this, started] { _onEnded(started); });
}

void DeviceQuestions::_onEnded(std::list<Dialogue>::iterator ended)
{
    ended->tell();
    _running.erase(ended);
    _startNext();
}

} // namespace KesDriver
