#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <memory>

namespace Overcurrent {

/// The relay that stands on the simulated bench: at rest, set as the test object says and connected as the
/// plan says. Any thread.
std::shared_ptr<KesDriver::ISimulatedTestObject> makeBenchRelay(const RelaySettings& settings,
                                                                const TestPlan& plan);

} // namespace Overcurrent
