#include <KesProgram/text/Program.h>

#include <KesCommon/TextTable.h>

namespace lng::Program {

namespace {

constexpr Text texts[] = {
    {"Message.hardwareFault", "Fault", "Авария"},
    {"Message.closeConfirmation", "Make tests. Stop?", "Производятся проверки. Остановить?"},
    {"Message.errorPrepareHardware", "Error switch on KESTO", "Ошибка включения КЕСТО"},
    {"Message.errorStartTests", "Error on starting test. The output process has already started.",
     "Ошибка запуска проверки. Процесс выдачи уже запущен."},
    {"Message.noKestos",
     "Error on starting test. The hardware configuration does not contain operational KESTOs.",
     "Ошибка запуска проверки. Конфигурация аппаратных средств не содержит рабочих КЕСТО."},
    {"Menu.file", "File", "Файл"},
    {"Menu.fileNew", "New", "Новый"},
    {"Menu.fileOpen", "Open", "Открыть"},
    {"Menu.fileSave", "Save", "Сохранить"},
    {"Menu.fileSaveAs", "Save as...", "Сохранить как..."},
    {"Menu.fileRecents", "Recent files", "Недавние файлы"},
    {"Menu.fileExport", "Export", "Экспорт"},
    {"Menu.help", "Help", "Помощь"},
    {"Menu.about", "About", "О программе"},
    {"Menu.exit", "Exit", "Выход"},
    {"Tool.fileNew", "Create\nCreate a new file with test results and verification parameters",
     "Создать\nСоздать новый файл с результатами тестирования и параметрами проверки"},
    {"Tool.fileOpen", "Open\nOpen file with test results and verification parameters",
     "Открыть\nОткрыть файл с результатами тестирования и параметрами проверки"},
    {"Tool.fileSave", "Save\nSave file with test results and verification parameters",
     "Сохранить\nСохранить файл с результатами тестирования и параметрами проверки"},
    {"Tool.start", "Start\nStart test or output on KESTO", "Старт\nЗапустить проверку или выдачу на КЕСТО"},
    {"Tool.stop", "Stop\nStop test or output on KESTO", "Стоп\nОстановить проверку или выдачу на КЕСТО"},
    {"Tool.closeConnect", "Close connection to KESTO", "Закрыть соединение с КЕСТО"},
    {"Tool.hardware", "Setting up KESTO\nOpen the window for selecting and configuring test devices",
     "Настройка КЕСТО\nОткрыть окно выбора и конфигурирования испытательных устройств"},
    {"Tool.testObject", "Test Object\nViewing and Configuring a Test Object",
     "Объект испытаний\nПросмотр и конфигурирование объекта испытаний"},
    {"Tool.report", "Report\nTests object report", "Протокол\nПротокол проверки объекта"},
    {"Help.defaultFileName", "Help", "Помощь"},
    {"Help.errorOpenFile", "Error opening help file:\n %s", "Ошибка открытия файла помощи:\n %s"},
    {"Status.syncTitle", "Sync:", "Синх.:"},
    {"Error.dataFormat", "Data format error", "Ошибка формата данных"},
    {"Error.fileAccess", "File access error", "Ошибка доступа к файлу"},
    {"Error.configLoad", "Error loading program configuration", "Ошибка загрузки конфигурации программы"},
};

constexpr Kes::TextTable table("Program", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Program
