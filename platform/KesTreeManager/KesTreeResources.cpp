#include <KesTreeManager/KesTreeResources.h>

#include <KesCommonView/IconFolder.h>

void KesTreeResources::Integrate()
{
    KesView::IconFolder::add("KesTreeManager/Icons");
}
