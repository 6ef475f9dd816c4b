#include <KesProgram/shell/ConfigurationError.h>

#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>

namespace KesProgram {

namespace {

std::string describe(const std::string& path, const std::string& reason)
{
    static constexpr lng::Text text{
        "Configuration.notSaved",
        "The list of recent files and the place of the window could not be saved. Check the rights of the "
        "folder and the free space.\n\nReason: %s\n\nPath:\n%s",
        "Не удалось сохранить список недавних файлов и положение окна. Проверьте права доступа к папке и "
        "свободное место.\n\nПричина: %s\n\nПуть:\n%s"};
    return Kes::StringHelper::format(text.get(), reason, path);
}

} // namespace

ConfigurationError::ConfigurationError(const std::string& path, const std::string& reason)
    : std::runtime_error(describe(path, reason))
{}

ConfigurationError::~ConfigurationError() = default;

} // namespace KesProgram
