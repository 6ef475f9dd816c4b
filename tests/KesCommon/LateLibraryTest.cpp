#include <KesCommon/LateLibrary.h>
#include <KesCommon/Log.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(LateLibraryTest, WhatCannotBeHadIsNamedInTheLog)
{
    std::string told;
    KesLog::Log::setObserver([&](KesLog::Log::Level, const std::string& text) { told = text; });
    EXPECT_EQ(Kes::findLateSymbol("KesNowhere", "anything"), nullptr);
    EXPECT_NE(told.find("libKesNowhere.so"), std::string::npos) << told;
    EXPECT_EQ(Kes::findLateSymbol("KesXslt", "noSuchFunction"), nullptr);
    EXPECT_NE(told.find("noSuchFunction"), std::string::npos) << told;
    KesLog::Log::setObserver(nullptr);
}

} // namespace
