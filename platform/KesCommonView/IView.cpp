#include <KesCommonView/IView.h>

namespace Kes {

IView::~IView() = default;

} // namespace Kes
