#include <KesCommonView/IWindowRectangle.h>

namespace Kes {

IWindowRectangle::~IWindowRectangle() = default;

} // namespace Kes
