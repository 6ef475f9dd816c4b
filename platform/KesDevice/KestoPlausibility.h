#pragma once

#include <KesDriver/IKestoLink.h>

#include <string>

/// What a device says is data from outside: these functions tell what can be believed. Any thread.
namespace KesDevice::KestoPlausibility {

bool isPlausible(const KesDriver::KestoIdentifer& identifer);
bool isPlausible(const KesDriver::KestoState& state);

/// The limits, or those of an ordinary device when they make no sense.
KesDriver::OutputLimits correct(const KesDriver::OutputLimits& limits);

/// Texts made presentable, at most 64 channels, and the device's own identity in place of any other.
KesDriver::KesAvary correct(KesDriver::KesAvary avary, const KesDriver::KestoIdentifer& identifer);

/// Valid UTF-8 on one line, of at most so many characters.
std::string correctText(const std::string& text, std::size_t longest);

/// Checks the events of one connection. Not synchronised: used on the device's thread.
class EventFilter {
public:
    bool accept(const KesDriver::InputEvent& event, const KesDriver::OutputLimits& limits);
    bool accept(const KesDriver::StepEvent& event, std::size_t stepCount);
    /// An end is never swallowed, since a program waits for it: one that is not plausible counts as
    /// incomplete.
    bool accept(KesDriver::SequenceEvent& event);

private:
    bool _acceptTime(KesDriver::DeviceTime time);

    KesDriver::DeviceTime _last{0};
};

} // namespace KesDevice::KestoPlausibility
