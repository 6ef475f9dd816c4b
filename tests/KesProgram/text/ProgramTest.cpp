#include "support/LanguageScope.h"

#include <KesProgram/text/Fault.h>
#include <KesProgram/text/FileManagerLocalization.h>
#include <KesProgram/text/Program.h>
#include <KesProgram/text/TreePresentersLocalization.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>

namespace {

using KesTest::LanguageScope;

constexpr const char* keys =
    "Message.hardwareFault Message.closeConfirmation Message.errorPrepareHardware Message.errorStartTests "
    "Message.noKestos Menu.file Menu.fileNew Menu.fileOpen Menu.fileSave Menu.fileSaveAs Menu.fileRecents "
    "Menu.fileExport Menu.help Menu.about Menu.exit Tool.fileNew Tool.fileOpen Tool.fileSave Tool.start "
    "Tool.stop Tool.closeConnect Tool.hardware Tool.testObject Tool.report Help.defaultFileName "
    "Help.errorOpenFile Status.syncTitle Error.dataFormat Error.fileAccess Error.configLoad";

std::string textOf(const std::string& key, lng::Language language)
{
    const LanguageScope scope(language);
    return lng::Program::get(key);
}

bool isAscii(const std::string& text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

TEST(ProgramTexts, EveryKeyHasATextOfTheSameShapeInBothLanguages)
{
    std::istringstream stream(keys);
    for (std::string key; stream >> key;) {
        const auto english = textOf(key, lng::English);
        const auto russian = textOf(key, lng::Russian);
        EXPECT_NE(english, key);
        EXPECT_TRUE(isAscii(english)) << english;
        EXPECT_FALSE(isAscii(russian)) << russian;
        const bool isTip = key.starts_with("Tool.") && key != "Tool.closeConnect";
        const auto newlines = isTip || key == "Help.errorOpenFile" ? 1 : 0;
        for (const auto& text : {english, russian}) {
            EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), newlines) << text;
            EXPECT_EQ(text.find("%s") != std::string::npos, key == "Help.errorOpenFile") << text;
        }
    }
    EXPECT_EQ(textOf("Menu.fileNew", lng::Russian), "Новый");
    EXPECT_EQ(textOf("Help.errorOpenFile", lng::English), "Error opening help file:\n %s");
}

TEST(ProgramTexts, UnknownKeyIsReturnedAsTheCallersOwnCharacters)
{
    for (const std::string key : {"", "menu.file", "Menu.file ", " Menu.file", "Menu", "Меню"})
        EXPECT_EQ(lng::Program::get(key), key.c_str()) << key;
}

TEST(ProgramTexts, FoundTextOutlivesTheCallAndTheThread)
{
    const char* text = nullptr;
    std::thread([&text] { text = lng::Program::get(std::string("Error.fileAccess")); }).join();
    EXPECT_STREQ(text, "File access error");
    EXPECT_EQ(text, lng::Program::get("Error.fileAccess"));
}

TEST(NamedTexts, FollowTheLanguageAtEachCall)
{
    namespace File = KesProgram::FileManagerLocalization;
    EXPECT_STREQ(lng::languageName(), "en-US");
    EXPECT_STREQ(lng::Fault::OffPower(), "\xD0\xA1hannel is disconnected");
    EXPECT_STREQ(File::saveDialog(), "Save changes to the file %s ?");
    EXPECT_STREQ(File::fileInvalidData(), "This file contains invalid data\n\nPath:\n%s");
    const LanguageScope russian(lng::Russian);
    EXPECT_STREQ(lng::languageName(), "ru-RU");
    EXPECT_STREQ(lng::Fault::OffPower(), "Канал отключен");
    EXPECT_STREQ(File::supportedFile(), "Файл архива \"Вельмора\"");
    EXPECT_STREQ(File::fileInvalidData(), "Файл содержит некорректные данные.\n\nПуть:\n%s");
    EXPECT_STREQ(KesTree::TreePresentersLocalization::testObjectWindowTitle(), "Объект испытаний");
}

} // namespace
