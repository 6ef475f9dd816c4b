#include <KesCommonView/IKesShell.h>

namespace Kes {

IKesShell::~IKesShell() = default;

} // namespace Kes
