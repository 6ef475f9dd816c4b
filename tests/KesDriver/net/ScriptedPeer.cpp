#include "ScriptedPeer.h"

#include <KesDriver/Outputs.h>
#include <KesDriver/net/LineBuffer.h>
#include <KesDriver/net/ValueText.h>

#include <array>
#include <stdexcept>
#include <utility>

#include <sys/socket.h>

using namespace KesDriver;

namespace KesTest {

namespace {

std::string getUsualAnswer(const std::string& commands)
{
    const std::pair<std::string, std::string> answers[] = {
        {":SYST:PROT?", "1.0"},
        {"*IDN?;:SYST:SIM?;:SYST:LIM?", "KES,KESTO-3,00017,2.4.1;1;" + ValueText::write(OutputLimits{})},
        {"*IDN?;:CAL:DATE?", "KES,KESTO-3,00017,2.4.1;\"2026-03-31\""},
        {":SYST:WATC 1;:SYST:BOOT?;:EVEN:LAST?", "7;5"},
        {":SYST:BOOT?", "7"},
        {":SYST:CONT:OWN?", "\"somebody\",\"10.0.0.1\""},
        {":SYST:CLOC?", "1000"},
        {":SYST:CLOC:COMM?", "1000,-2000"},
        {":SYST:LIM?", ValueText::write(OutputLimits{})},
        {":SYST:STAT?;:SYST:FAUL?", "0,1,220,0,IDLE;0,\"IA:100\""},
        {":SYST:FAUL?", "1"},
    };
    for (const auto& [question, answer] : answers)
        if (commands == question)
            return answer;
    return {};
}

std::string setNumber(std::string reply, std::uint64_t number)
{
    const std::pair<std::string, std::uint64_t> marks[] = {
        {"<n>", number}, {"<n-1>", number - 1}, {"<n+1>", number + 1}};
    for (const auto& [mark, value] : marks)
        for (auto at = reply.find(mark); at != reply.npos; at = reply.find(mark, at))
            reply.replace(at, mark.size(), std::to_string(value));
    return reply;
}

} // namespace

ScriptedPeer::~ScriptedPeer()
{
    _end();
}

void ScriptedPeer::_end()
{
    close();
    if (_thread.joinable())
        _thread.join();
}

StreamConnector ScriptedPeer::getConnector()
{
    return [this](GCancellable*) { return _accept(); };
}

StreamPointer ScriptedPeer::_accept()
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw std::runtime_error("There is no pair of sockets.");
    _end();
    _stream = makeStream(ends[0]);
    _hasEnded = false;
    _thread = std::thread([this] { _serve(); });
    return makeStream(ends[1]);
}

void ScriptedPeer::_serve()
{
    LineBuffer lines(16U << 20U);
    std::string line;
    std::array<char, 65536> bytes{};
    auto* input = g_io_stream_get_input_stream(_stream.get());
    while (true) {
        const auto count = g_input_stream_read(input, bytes.data(), bytes.size(), nullptr, nullptr);
        if (count <= 0)
            break;
        lines.append({bytes.data(), static_cast<std::size_t>(count)});
        while (lines.take(line))
            _hear(line);
    }
    close();
    std::lock_guard lock(_mutex);
    _hasEnded = true;
}

void ScriptedPeer::_hear(const std::string& line)
{
    const std::string beginning = "*CLS;";
    const std::string end = ";:SYST:ERR?;:SYST:ECHO? ";
    const auto place = line.rfind(end);
    // A block goes over several lines.
    if (line.starts_with(beginning))
        _question.clear();
    _question += line.substr(0, place);
    if (place == std::string::npos)
        return;
    const auto commands = _question.substr(beginning.size());
    const auto number = std::stoull(line.substr(place + end.size()));
    Script script;
    {
        std::lock_guard lock(_mutex);
        _questions.push_back(commands);
        script = _script;
    }
    auto reply = script ? script(commands) : std::nullopt;
    if (reply == hangUp)
        return close();
    send(setNumber(reply ? *std::move(reply) : good(getUsualAnswer(commands)), number));
}

void ScriptedPeer::setScript(Script script)
{
    std::lock_guard lock(_mutex);
    _script = std::move(script);
}

void ScriptedPeer::send(const std::string& bytes)
{
    std::lock_guard lock(_sending);
    auto* output = g_io_stream_get_output_stream(_stream.get());
    g_output_stream_write_all(output, bytes.data(), bytes.size(), nullptr, nullptr, nullptr);
}

void ScriptedPeer::close()
{
    if (_stream)
        g_socket_shutdown(g_socket_connection_get_socket(G_SOCKET_CONNECTION(_stream.get())), TRUE, TRUE,
                          nullptr);
}

std::vector<std::string> ScriptedPeer::getQuestions() const
{
    std::lock_guard lock(_mutex);
    return _questions;
}

bool ScriptedPeer::hasEnded() const
{
    std::lock_guard lock(_mutex);
    return _hasEnded;
}

std::string ScriptedPeer::good(const std::string& fields)
{
    return (fields.empty() ? "" : fields + ';') + "0,\"No error\";<n>\n";
}

} // namespace KesTest
