#pragma once

#include <KesDriver/IKestoLink.h>

#include <vector>

/// What a simulated device says when it is set to send nonsense.
namespace KesDriver::SimulatedNonsense {

KestoIdentity identity();
KestoState state();
OutputLimits limits();
DeviceTime time();
ClockReading clockReading();

/// Events out of the blue.
std::vector<Report> events();
/// What becomes of a real report.
Report garble(Report report);

} // namespace KesDriver::SimulatedNonsense
