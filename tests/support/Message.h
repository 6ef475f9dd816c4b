#pragma once

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/Result.h>

namespace KesTest {

/// What a failure says, and those inside it; empty for a success.
inline std::string message(const Kes::Result& result)
{
    return result ? std::string() : Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

} // namespace KesTest
