#pragma once

#include "TestClient.h"
#include "support/WaitUntil.h"

#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gmock/gmock.h>

namespace KesTest {

using namespace std::chrono_literals;
using KesDriver::DeviceServer;
using KesDriver::SimulatedKesto;

inline const std::string good = "0,\"No error\"";

/// The preparation of a step with this current in IA.
inline std::string step(const std::string& seconds, const std::string& amperes)
{
    return ":SEQ:STEP " + seconds + ',' + amperes + ",0,0,0,0,0,0,0,0,0,0,0,50,50,0";
}

/// A served device and one of its sessions.
class SessionTest : public testing::Test {
protected:
    int connect() { return server.connect(); }
    void takeControl()
    {
        ASSERT_EQ(client.tell("SYST:CONT:TAKE \"test\""), good);
        ASSERT_EQ(client.tell("OUTP ON"), good);
    }

    std::shared_ptr<SimulatedKesto> device =
        std::make_shared<SimulatedKesto>(KesDriver::KestoIdentity{{3, 17}, "2.4.1", "2026-03-31"});
    DeviceServer server{device};
    TestClient client{server.connect()};
};

} // namespace KesTest
