#pragma once

#include <KesProgram/text/TextPair.h>

/// The names of the kinds of device faults, in the language of the process. Any thread.
namespace lng::Fault {

inline const char* AvaryConnect()
{
    static constexpr TextPair text{"Connection error", "Ошибка связи"};
    return choose(text);
}

inline const char* AvaryButtonOperate()
{
    static constexpr TextPair text{"Quick shutdown", "Оперативное отключение"};
    return choose(text);
}

/// The English text begins with the Cyrillic letter U+0421; it is searched for and compared as it is.
inline const char* OffPower()
{
    static constexpr TextPair text{"\u0421hannel is disconnected", "Канал отключен"};
    return choose(text);
}

inline const char* Overheat()
{
    static constexpr TextPair text{"Overheat", "Перегрев"};
    return choose(text);
}

inline const char* Overload()
{
    static constexpr TextPair text{"Overload", "Перегрузка"};
    return choose(text);
}

} // namespace lng::Fault
