#pragma once

#include <KesCommon/Text.h>

/// The names of the kinds of device faults, in the language of the process; `KesProgram::_createAvaryMessage`
/// makes the message of them. Any thread.
namespace lng::Fault {

/// `KesAvary::isConnectError`: the device does not answer any more.
inline const char* AvaryConnect()
{
    return lng::Text("Fault.AvaryConnect", "Connection error", "Ошибка связи").get();
}

/// `KesAvary::isQuickShutdown`: the emergency button on the device was pressed.
inline const char* AvaryButtonOperate()
{
    return lng::Text("Fault.AvaryButtonOperate", "Quick shutdown", "Оперативное отключение").get();
}

/// `KesAvaryChannel::isDisconnected`. The English text begins with the Cyrillic letter U+0421; it is searched
/// for and compared as it is.
inline const char* OffPower()
{
    return lng::Text("Fault.OffPower", "\u0421hannel is disconnected", "Канал отключен").get();
}

/// `KesAvaryChannel::isOverheat`.
inline const char* Overheat()
{
    return lng::Text("Fault.Overheat", "Overheat", "Перегрев").get();
}

/// `KesAvaryChannel::isOverload`.
inline const char* Overload()
{
    return lng::Text("Fault.Overload", "Overload", "Перегрузка").get();
}

} // namespace lng::Fault
