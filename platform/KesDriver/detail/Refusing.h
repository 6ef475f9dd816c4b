#pragma once

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/Refusal.h>

#include <string>

namespace KesDriver {

/// The one place that knows which code belongs to a refusal; the keys are those of the driver's texts. -222 for
/// a key that is not listed.
RefusalCode findRefusalCode(const std::string& key);

/// A refusal in the words of the key.
template <typename... Args>
Kes::Result refuse(const char* key, const Args&... args)
{
    return Refusal::failure(findRefusalCode(key), Kes::StringHelper::format(lng::Driver::get(key), args...));
}

/// In the words of the key, for the reason that another refusal has.
template <typename... Args>
Kes::Result refuseAs(const Kes::Result& reason, const char* key, const Args&... args)
{
    return Refusal::failure(getRefusalCode(reason).value_or(findRefusalCode(key)),
                            Kes::StringHelper::format(lng::Driver::get(key), args...));
}

} // namespace KesDriver
