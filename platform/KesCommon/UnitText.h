#pragma once

#include <KesCommon/Text.h>

/// The signs of units, as they stand behind a number. Any thread.
namespace lng::Unit {

inline constexpr Text none;
inline constexpr Text ampere{"Unit.ampere", "A", "А"};
inline constexpr Text volt{"Unit.volt", "V", "В"};
inline constexpr Text hertz{"Unit.hertz", "Hz", "Гц"};
inline constexpr Text hertzPerSecond{"Unit.hertzPerSecond", "Hz/s", "Гц/с"};
inline constexpr Text second{"Unit.second", "s", "с"};
inline constexpr Text millisecond{"Unit.millisecond", "ms", "мс"};
inline constexpr Text percent{"Unit.percent", "%", "%"};
/// Multiples of the setting current of a relay, and of its nominal current.
inline constexpr Text timesSetting{"Unit.timesSetting", "× Is", "× Iуст"};
inline constexpr Text timesNominal{"Unit.timesNominal", "× In", "× Iн"};
inline constexpr Text degree{"Unit.degree", "°", "°"};

} // namespace lng::Unit
