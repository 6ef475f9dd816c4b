#include <KesDriver/KestoIdentifer.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>

namespace KesDriver {

std::string KestoIdentifer::getTypeName() const
{
    const std::string product = lng::Driver::get("Kesto.typeName");
    return _type == 0 ? product : product + '-' + std::to_string(_type);
}

std::string KestoIdentifer::toDisplayString() const
{
    if (_serialNumber == 0)
        return getTypeName();
    return Kes::StringHelper::format("%s %s %05u", getTypeName(), lng::Driver::get("Kesto.number"),
                                     _serialNumber);
}

} // namespace KesDriver
