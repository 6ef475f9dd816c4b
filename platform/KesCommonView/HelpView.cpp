#include <KesCommonView/HelpView.h>

#include <KesCommon/DesktopOpener.h>
#include <KesCommon/StringHelper.h>
#include <KesCommonView/DialogView.h>
#include <KesCommonView/detail/CommonViewText.h>

namespace Kes {

void HelpView::show(IView* parent, const std::string& fileName)
{
    if (DesktopOpener::open(fileName))
        return;
    const auto text = StringHelper::format(lng::CommonView::get("Help.errorOpenFile"), fileName);
    DialogView::show(parent, text, {}, DialogResult::Ok);
}

} // namespace Kes
