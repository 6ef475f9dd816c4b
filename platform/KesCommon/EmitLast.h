#pragma once

namespace Kes {

/// Emits a `sigc::signal` whose slots may destroy its owner: sigc++ does not allow a signal to die during its
/// own emission, but a copy, which shares the slots, may outlive it. The thread of the signal.
template <typename Signal, typename... Args>
void emitLast(const Signal& signal, const Args&... args)
{
    const auto living = signal;
    living.emit(args...);
}

} // namespace Kes
