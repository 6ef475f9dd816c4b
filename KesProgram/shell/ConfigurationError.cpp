#include <KesProgram/shell/ConfigurationError.h>

#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>

namespace KesProgram {

namespace {

std::string describe(const std::string& path, const std::string& reason)
{
    static constexpr lng::Text text{"Configuration.notSaved",
                                    "The program's configuration could not be saved: recent files and "
                                    "window place are lost.\n\nReason: %s\n\nPath:\n%s",
                                    "Не удалось сохранить конфигурацию программы: недавние файлы и "
                                    "положение окна потеряны.\n\nПричина: %s\n\nПуть:\n%s"};
    return Kes::StringHelper::format(text.get(), reason, path);
}

} // namespace

ConfigurationError::ConfigurationError(const std::string& path, const std::string& reason)
    : std::runtime_error(describe(path, reason))
{}

ConfigurationError::~ConfigurationError() = default;

} // namespace KesProgram
