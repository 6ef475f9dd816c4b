#include <KesTreeRelay/KesTreeRelayTreeResources.h>

#include <KesCommonView/IconFolder.h>

void KesTreeRelayTreeResources::Integrate()
{
    KesView::IconFolder::add("KesTreeRelay/Icons");
}
