#include <KesCommon/ExceptionText.h>

#include <KesCommon/CommonText.h>

#include <glibmm/exception.h>

#include <exception>

namespace Kes {

std::string getCurrentExceptionText()
{
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (const Glib::Exception& error) {
        return error.what().raw();
    } catch (...) {
        return lng::Common::get("error.Unknown");
    }
}

} // namespace Kes
