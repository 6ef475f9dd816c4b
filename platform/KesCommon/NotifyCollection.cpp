#include <KesCommon/NotifyCollection.h>

#include <KesCommon/CommonText.h>

namespace Kes {

Result collectionReadOnlyError()
{
    return Result::failure(lng::Common::get("error.ReadOnly"));
}

} // namespace Kes
