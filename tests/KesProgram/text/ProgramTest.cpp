#include "support/LanguageScope.h"

#include <KesProgram/text/Program.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

TEST(ProgramTexts, FoundTextOutlivesTheCallAndTheThreadAndAnUnknownKeyIsItsOwnText)
{
    const KesTest::LanguageScope russian(lng::Russian);
    const char* text = nullptr;
    std::thread([&text] { text = lng::Program::get(std::string("Error.fileAccess")); }).join();
    EXPECT_STREQ(text, "Ошибка доступа к файлу");
    for (const std::string key : {"", "menu.file", "Menu.file ", "Меню"})
        EXPECT_EQ(lng::Program::get(key), key.c_str()) << key;
}

} // namespace
