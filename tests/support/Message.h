#pragma once

#include <KesCommon/Result.h>

#include <string>

namespace KesTest {

/// What a failure says; empty for a success.
inline std::string message(const Kes::Result& result)
{
    return result || !result.getError() ? std::string() : result.getError()->getMessage();
}

} // namespace KesTest
