#pragma once

#include <KesProgram/recovery/RecoveryStore.h>

#include <string>
#include <vector>

namespace KesTest {

/// The bytes of what a program that starts now would offer its user.
inline std::vector<std::string> lostIn(const std::string& folder)
{
    std::vector<std::string> bytes;
    for (const auto& work : KesProgram::RecoveryStore(folder).findLost())
        bytes.push_back(work.getCopy().bytes);
    return bytes;
}

} // namespace KesTest
