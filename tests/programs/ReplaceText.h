#pragma once

#include <gtest/gtest.h>

#include <string>

namespace KesTest {

/// The first place between the texts (both included) gets another one; a failure when there is none.
inline void replace(std::string& text, const std::string& from, const std::string& to,
                    const std::string& with)
{
    const auto begin = text.find(from);
    const auto end = text.find(to, begin + from.size());
    ASSERT_TRUE(begin < end && end != std::string::npos) << from << " in\n" << text;
    text.replace(begin, end + to.size() - begin, with);
}
inline void replace(std::string& text, const std::string& what, const std::string& with)
{
    replace(text, what, "", with);
}

} // namespace KesTest
