#include "support/LanguageScope.h"

#include <KesProgram/text/Fault.h>
#include <KesProgram/text/FileManagerLocalization.h>
#include <KesProgram/text/Program.h>
#include <KesProgram/text/TreePresentersLocalization.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace {

using KesTest::LanguageScope;

const std::vector<std::string> keys{"Message.hardwareFault",
                                    "Message.closeConfirmation",
                                    "Message.errorPrepareHardware",
                                    "Message.errorStartTests",
                                    "Message.noKestos",
                                    "Menu.file",
                                    "Menu.fileNew",
                                    "Menu.fileOpen",
                                    "Menu.fileSave",
                                    "Menu.fileSaveAs",
                                    "Menu.fileRecents",
                                    "Menu.fileExport",
                                    "Menu.help",
                                    "Menu.about",
                                    "Menu.exit",
                                    "Tool.fileNew",
                                    "Tool.fileOpen",
                                    "Tool.fileSave",
                                    "Tool.start",
                                    "Tool.stop",
                                    "Tool.closeConnect",
                                    "Tool.hardware",
                                    "Tool.testObject",
                                    "Tool.report",
                                    "Help.defaultFileName",
                                    "Help.errorOpenFile",
                                    "Status.syncTitle",
                                    "Error.dataFormat",
                                    "Error.fileAccess",
                                    "Error.configLoad"};

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
    ASSERT_EQ(keys.size(), 30u);
    for (const auto& key : keys) {
        const auto english = textOf(key, lng::English);
        const auto russian = textOf(key, lng::Russian);
        EXPECT_NE(english, key);
        EXPECT_TRUE(isAscii(english)) << english;
        EXPECT_FALSE(isAscii(russian)) << russian;
        const auto lines = key.starts_with("Tool.") && key != "Tool.closeConnect" ? 1 : 0;
        const auto newlines = key == "Help.errorOpenFile" ? 1 : lines;
        for (const auto& text : {english, russian}) {
            EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), newlines) << text;
            EXPECT_EQ(text.find("%s") != std::string::npos, key == "Help.errorOpenFile") << text;
        }
    }
    EXPECT_EQ(textOf("Menu.fileNew", lng::English), "New");
    EXPECT_EQ(textOf("Menu.fileNew", lng::Russian), "Новый");
    EXPECT_EQ(textOf("Help.errorOpenFile", lng::English), "Error opening help file:\n %s");
    EXPECT_EQ(textOf("Tool.report", lng::English), "Report\nTests object report");
    EXPECT_EQ(textOf("Menu.help", lng::Russian), textOf("Help.defaultFileName", lng::Russian));
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
    using Text = const char* (*)();
    namespace File = KesProgram::FileManagerLocalization;
    const struct {
        Text text;
        const char* english;
        const char* russian;
    } cases[] = {
        {lng::languageName, "en-US", "ru-RU"},
        {lng::Fault::AvaryConnect, "Connection error", "Ошибка связи"},
        {lng::Fault::AvaryButtonOperate, "Quick shutdown", "Оперативное отключение"},
        {lng::Fault::OffPower, "\xD0\xA1hannel is disconnected", "Канал отключен"},
        {lng::Fault::Overheat, "Overheat", "Перегрев"},
        {lng::Fault::Overload, "Overload", "Перегрузка"},
        {File::title, "File manager", "Менеджер файлов"},
        {File::saveDialog, "Save changes to the file %s ?", "Сохранить изменения в файле %s ?"},
        {File::fileInvalidData, "This file contains invalid data\n\nPath:\n%s",
         "Файл содержит некорректные данные.\n\nПуть:\n%s"},
        {File::supportedFile, "Archive \"Velmora\"", "Файл архива \"Вельмора\""},
        {KesTree::TreePresentersLocalization::testObjectWindowTitle, "Test object", "Объект испытаний"},
    };
    for (const auto& expected : cases) {
        EXPECT_STREQ(expected.text(), expected.english);
        const LanguageScope russian(lng::Russian);
        EXPECT_STREQ(expected.text(), expected.russian);
    }
    EXPECT_EQ(std::string(lng::Fault::OffPower()).size(), 24u);
}

} // namespace
