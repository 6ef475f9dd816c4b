#include "support/LanguageScope.h"

#include <KesProgram/text/FileManagerLocalization.h>
#include <KesProgram/text/Program.h>

#include <gtest/gtest.h>

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

/// An answer to them ends a test or loses work: both languages have to ask the same.
TEST(ProgramTexts, QuestionsAreThoseThatTheAnswersAreFor)
{
    EXPECT_STREQ(lng::Program::get("Message.closeConfirmation"), "Make tests. Stop?");
    EXPECT_STREQ(KesProgram::FileManagerLocalization::saveDialog(), "Save changes to the file %s ?");
    const KesTest::LanguageScope russian(lng::Russian);
    EXPECT_STREQ(lng::Program::get("Message.closeConfirmation"), "Производятся проверки. Остановить?");
    EXPECT_STREQ(KesProgram::FileManagerLocalization::saveDialog(), "Сохранить изменения в файле %s ?");
}

} // namespace
