#include <KesDevice/view/detail/DeviceDescription.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

namespace KesDevice {

namespace {

using Kes::StringHelper::format;
using lng::DeviceView::get;

constexpr std::size_t longestName = 64; // characters

} // namespace

std::string describeDevice(const KesDriver::KestoIdentifer& identifer, bool isSimulated)
{
    const auto name = identifer.toDisplayString();
    return isSimulated ? format(get("Identity.simulated"), name) : name;
}

std::string describeUse(const std::string& owner)
{
    if (owner.empty())
        return {};
    const auto name = Kes::StringHelper::toPlainText(owner, longestName);
    return format(get("Search.inUse"), name.empty() ? "?" : name);
}

} // namespace KesDevice
