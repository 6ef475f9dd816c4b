// The least program that shows a window: what every start of a program on this toolkit costs.

#include <gtkmm/application.h>
#include <gtkmm/window.h>

int main(int argc, char** argv)
{
    const auto application =
        Gtk::Application::create(argc, argv, "kes.bare.window", Gio::APPLICATION_NON_UNIQUE);
    Gtk::Window window;
    window.set_default_size(1000, 700);
    return application->run(window);
}
