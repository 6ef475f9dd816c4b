#include <KesCommonView/IPresenter.h>

namespace Kes {

IPresenter::~IPresenter() = default;

} // namespace Kes
