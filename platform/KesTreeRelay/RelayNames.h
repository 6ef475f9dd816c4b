#pragma once

#include <KesCommon/Text.h>

/// Names of a relay's values, for the test object and for what is written about it. Any thread.
namespace KesTree::RelayNames {

inline constexpr lng::Text nominalCurrent{"Relay.nominalCurrent", "Nominal current In", "Номинальный ток Iн"};
inline constexpr lng::Text nominalVoltage{"Relay.nominalVoltage", "Nominal voltage (phase to phase)",
                                          "Номинальное напряжение (междуфазное)"};
inline constexpr lng::Text timeTolerance{"Relay.timeTolerance", "Time tolerance", "Допуск времени"};
inline constexpr lng::Text currentTolerance{"Relay.currentTolerance", "Current tolerance", "Допуск тока"};
inline constexpr lng::Text contacts{"Relay.contacts", "Contacts", "Контакты"};
inline constexpr lng::Text tripInput{"Relay.tripInput", "Input of the trip contact",
                                     "Вход контакта отключения"};
inline constexpr lng::Text startInput{"Relay.startInput", "Input of the start contact",
                                      "Вход пускового контакта"};
inline constexpr lng::Text debounce{"Relay.debounce", "Debounce time", "Время подавления дребезга"};
inline constexpr lng::Text resetTime{"Relay.resetTime", "Reset time", "Время возврата"};
inline constexpr lng::Text dropOffRatio{"Relay.dropOffRatio", "Drop-off ratio", "Коэффициент возврата"};

/// The characteristics, in the order of `RelayNodes::OvercurrentCurve`.
inline constexpr lng::Text curves[] = {
    {"Relay.standardInverse", "Standard inverse (IEC A)", "Нормально инверсная (МЭК A)"},
    {"Relay.veryInverse", "Very inverse (IEC B)", "Сильно инверсная (МЭК B)"},
    {"Relay.extremelyInverse", "Extremely inverse (IEC C)", "Чрезвычайно инверсная (МЭК C)"},
    {"Relay.longTimeInverse", "Long-time inverse (BS 142)", "Длительно инверсная (BS 142)"},
    {"Relay.definiteTime", "Definite time", "Независимая"},
    {"Relay.moderatelyInverseIeee", "Moderately inverse (IEEE)", "Умеренно инверсная (IEEE)"},
    {"Relay.veryInverseIeee", "Very inverse (IEEE)", "Сильно инверсная (IEEE)"},
    {"Relay.extremelyInverseIeee", "Extremely inverse (IEEE)", "Чрезвычайно инверсная (IEEE)"},
    {"Relay.table", "Table", "Таблица"}};

} // namespace KesTree::RelayNames
