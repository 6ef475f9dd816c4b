#pragma once

#include <KesCommon/Text.h>

/// The names of the kinds of device faults, in the language of the process. Any thread.
namespace lng::Fault {

inline const char* AvaryConnect()
{
    return lng::Text("Fault.AvaryConnect", "Connection error", "Ошибка связи").get();
}

inline const char* AvaryButtonOperate()
{
    return lng::Text("Fault.AvaryButtonOperate", "Quick shutdown", "Оперативное отключение").get();
}

/// The English text begins with the Cyrillic letter U+0421; it is searched for and compared as it is.
inline const char* OffPower()
{
    return lng::Text("Fault.OffPower", "\u0421hannel is disconnected", "Канал отключен").get();
}

inline const char* Overheat()
{
    return lng::Text("Fault.Overheat", "Overheat", "Перегрев").get();
}

inline const char* Overload()
{
    return lng::Text("Fault.Overload", "Overload", "Перегрузка").get();
}

} // namespace lng::Fault
