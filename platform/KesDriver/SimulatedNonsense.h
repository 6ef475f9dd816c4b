#pragma once

#include <KesDriver/IKestoLink.h>
#include <KesDriver/SimulatedOutput.h>
#include <KesDriver/SimulatedPort.h>

#include <vector>

/// What a simulated device says when it is told to talk nonsense.
namespace KesDriver::SimulatedNonsense {

KestoIdentifer identifer();
KestoState state();
OutputLimits limits();
DeviceTime time();
KesAvary avary();

/// Events out of the blue.
std::vector<SimulatedPort::Report> events();
/// What becomes of a real event.
SimulatedOutput::Report garble(SimulatedOutput::Report report);

} // namespace KesDriver::SimulatedNonsense
