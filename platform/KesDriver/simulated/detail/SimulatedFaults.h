#pragma once

#include <KesDriver/KesAvary.h>
#include <KesDriver/KestoIdentifer.h>
#include <KesDriver/OutputCheck.h>

#include <array>

namespace KesDriver {

/// The faults that a simulated device has at the moment. A value; not synchronised, its owner does that.
class SimulatedFaults {
public:
    bool isQuickShutdown = false;
    /// By channel, counted from 0.
    std::array<KesAvaryChannel, channelCount> channels;

    bool empty() const;
    /// The record as the device reports it, with the faulty channels only.
    KesAvary toAvary(const KestoIdentifer& identifer) const;
};

} // namespace KesDriver
