#pragma once

#include <KesProgram/text/TextPair.h>

/// The names of the kinds of device faults, in the language of the process. Any thread.
namespace lng::Fault {

inline const char* AvaryConnect()
{
    return choose({"Connection error", "Ошибка связи"});
}

inline const char* AvaryButtonOperate()
{
    return choose({"Quick shutdown", "Оперативное отключение"});
}

/// The English text begins with the Cyrillic letter U+0421; it is searched for and compared as it is.
inline const char* OffPower()
{
    return choose({"\u0421hannel is disconnected", "Канал отключен"});
}

inline const char* Overheat()
{
    return choose({"Overheat", "Перегрев"});
}

inline const char* Overload()
{
    return choose({"Overload", "Перегрузка"});
}

} // namespace lng::Fault
