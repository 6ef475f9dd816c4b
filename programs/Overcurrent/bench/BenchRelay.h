#pragma once

#include <Overcurrent/data/RelaySettings.h>

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <memory>

namespace Overcurrent {

/// The relay that stands on the simulated bench: at rest, set as the test object says. Any thread.
std::shared_ptr<KesDriver::ISimulatedTestObject> makeBenchRelay(const RelaySettings& settings);

} // namespace Overcurrent
