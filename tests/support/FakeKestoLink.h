#pragma once

#include <KesDriver/IKestoLink.h>

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <queue>
#include <string>
#include <thread>
#include <vector>

namespace KesTest {

/// The operations of a link that a script can answer and a test can look for.
enum class LinkCall {
    Connect,
    Disconnect,
    Identify,
    ReadState,
    SetAuxDC,
    StartWorkingMode,
    StopWorkingMode,
    SetOutputs,
    RunSequence,
    StopOutputs
};

/// A device whose every answer is scripted, for tests of what stands above the link.
///
/// The test keeps it; the links made from it may outlive it or die before it. It accepts everything until it
/// is told otherwise, records every call, and reports events on a thread of its own, as a real link does. Any
/// thread.
///
///     KesTest::FakeKesto fake;
///     KesDevice::Kesto kesto(address, fake.createLink());
class FakeKesto {
public:
    using Report = std::function<void(KesDriver::IKestoLinkListener&)>;

    FakeKesto();
    ~FakeKesto();
    FakeKesto(const FakeKesto&) = delete;
    FakeKesto& operator=(const FakeKesto&) = delete;

    std::unique_ptr<KesDriver::IKestoLink> createLink();

    // What it answers.

    void setIdentifer(KesDriver::KestoIdentifer identifer);
    void setState(KesDriver::KestoState state);
    void setLimits(KesDriver::OutputLimits limits);
    void setSimulated(bool simulated);
    void setTime(KesDriver::DeviceTime time);
    /// The call fails with the text from now on; an empty text makes it succeed again.
    void fail(LinkCall call, const std::string& text);
    /// The call stands still from now on until `release` (before anything else happens).
    void hold(LinkCall call);
    void release(LinkCall call);
    /// Runs on the calling thread at the start of every such call; null: nothing.
    void onCall(LinkCall call, std::function<void()> hook);

    // What it was asked.

    std::vector<LinkCall> getCalls() const;
    std::size_t countCalls(LinkCall call) const;
    /// Waits until the call has begun that often; false after ten seconds.
    bool waitForCall(LinkCall call, std::size_t count = 1) const;
    bool isConnected() const;
    bool isWorking() const;
    KesDriver::OutputState getOutputs() const;
    std::vector<KesDriver::OutputSequence> getSequences() const;
    bool isAuxDCEnabled() const;
    double getAuxDCVolts() const;

    // What it reports by itself, on its own thread and in the order of the calls. The result is ready when
    // the listener has returned; without a listener the report is dropped.

    std::future<void> report(Report report);
    std::future<void> reportInput(unsigned input, bool isClosed, KesDriver::DeviceTime time);
    std::future<void> reportStep(std::size_t step, KesDriver::DeviceTime time);
    std::future<void> reportSequenceFinished(bool isComplete, KesDriver::DeviceTime time);
    std::future<void> reportAvary(KesDriver::KesAvary avary);
    /// Drops the connection and reports its loss.
    std::future<void> reportConnectionLost();

private:
    class Link;
    struct State;

    std::shared_ptr<State> _state;
    std::thread _thread;
};

} // namespace KesTest
