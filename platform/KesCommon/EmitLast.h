#pragma once

namespace Kes {

/// Emits a `sigc::signal` whose slots may destroy its owner. sigc++ loses track of its slots when a signal
/// dies during its own emission; a copy, which shares them, lives until the emission is over.
template <typename Signal, typename... Args>
void emitLast(const Signal& signal, const Args&... args)
{
    const auto living = signal;
    living.emit(args...);
}

} // namespace Kes
