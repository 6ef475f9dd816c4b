#include <KesDriver/simulated/serving/detail/Session.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

#include <utility>

namespace KesDriver {

namespace {

/// For what is left to send to a client that has ended its own side only.
constexpr std::chrono::milliseconds lastWords{1000};

} // namespace

std::shared_ptr<Session> Session::start(std::shared_ptr<ServedDevice> device, GObjectPtr<GSocket> socket,
                                        Log log)
{
    auto session = std::make_shared<Session>(std::move(device), std::move(socket), std::move(log));
    session->_number = session->_device->getSessions().add(session);
    session->_dialogue.begin(session->_number);
    session->_worker =
        Kes::Worker("KesSession_" + std::to_string(session->_number), [raw = session.get()] { raw->_run(); });
    return session;
}

Session::Session(std::shared_ptr<ServedDevice> device, GObjectPtr<GSocket> socket, Log log)
    : _device(std::move(device)),
      _log(std::move(log)),
      _socket(std::move(socket)),
      _outbox(std::make_shared<Outbox>([this](std::string_view bytes) { return _socket.send(bytes); },
                                       [this](std::string_view bytes) { return _socket.sendSome(bytes); },
                                       [this] { drop(); })),
      _dialogue(_device, _outbox, _socket.getAddress())
{}

Session::~Session()
{
    drop();
    _worker.wait();
}

void Session::_run()
{
    try {
        _serve();
    } catch (...) {
        KesLog::Log::writeError("A session has failed: " + Kes::getCurrentExceptionText());
    }
    _end();
}

void Session::_serve()
{
    std::string bytes;
    while (!_dropped) {
        const auto received = _socket.receive(bytes, _dialogue.getDeadline());
        const auto now = std::chrono::steady_clock::now();
        if (received == SessionSocket::Received::End)
            return;
        if (received == SessionSocket::Received::Bytes)
            _dialogue.noteHeard(now);
        else
            _dialogue.checkWatchdog(now);
        _reader.add(bytes);
        if (!_executeAll())
            return;
    }
}

/// False when nothing more can be understood.
bool Session::_executeAll()
{
    while (const auto message = _reader.next()) {
        if (_log)
            _log(_number, true, *message);
        auto answer = _dialogue.execute(*message);
        // Executing may have taken its time; the next message has not been looked at yet.
        _dialogue.noteHeard(std::chrono::steady_clock::now());
        if (!answer)
            continue;
        if (_log)
            _log(_number, false, *answer);
        _outbox->answer(std::move(*answer));
    }
    if (_reader.isOverrun())
        KesLog::Log::writeWarn("A line from " + _dialogue.getAddress() + " was too long; the session ends.");
    return !_reader.isOverrun();
}

void Session::_end()
{
    // The outputs first.
    _dialogue.end();
    _device->getSessions().remove(_number);
    _outbox->finish(_dropped ? lastWords.zero() : lastWords);
    _socket.shutDown();
    _ended = true;
}

void Session::noteConditions(Scpi::StatusRegister::Bits operation, Scpi::StatusRegister::Bits questionable)
{
    _dialogue.noteConditions(operation, questionable);
}

void Session::setSilent(bool isSilent)
{
    _outbox->setSilent(isSilent);
}

void Session::setDelay(std::chrono::milliseconds delay)
{
    _outbox->setDelay(delay);
}

void Session::drop()
{
    _dropped = true;
    _socket.shutDown();
}

} // namespace KesDriver
