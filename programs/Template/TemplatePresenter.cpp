#include "TemplatePresenter.h"

#include <KesCommon/Text.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>
#include <KesProgram/views/IProgramView.h>

#include <gtkmm/label.h>

namespace {

/// What the window is about.
class ContentView : public Gtk::Label, public Kes::IView {
public:
    ContentView()
        : Gtk::Label(lng::Text("Template.content", "An empty test: Start begins it, Stop ends it.",
                               "Пустая проверка: Старт начинает её, Стоп завершает.")
                         .get())
    {
        set_size_request(480, 240);
    }
};

} // namespace

void TemplatePresenter::_onInit()
{
    _help = std::make_unique<KesProgram::HelpMenuPresenter>(this, _model);
    _control = std::make_unique<KesProgram::HardwareControlToolbarPresenter>(_model);
    _content = std::make_unique<ContentView>();
    _getMenuBar()->addMenu(_help->getView());
    _getMenuBar()->addToolbar(_control->getView());
    _getProgramView()->setContent(*_content);
}
