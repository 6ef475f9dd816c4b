#include <KesTreeRelay/Nameplate.h>

#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/detail/Rules.h>

namespace KesTree::Nameplate {

void addTo(Node& testObject)
{
    auto& group = testObject.add(
        Node::group(Group, {"Nameplate.title", "Nameplate and remarks", "Паспорт и примечания"}));
    const auto add = [&group](const char* path, lng::Text name) {
        group.add(Node::text(RelayNodes::idOf(path), name, "")).setIsLater();
    };
    add(Place, {"Nameplate.place", "Place", "Место установки"});
    add(Bay, {"Nameplate.bay", "Bay", "Присоединение"});
    add(RelayType, {"Nameplate.relayType", "Relay type", "Тип реле"});
    add(SerialNumber, {"Nameplate.serialNumber", "Serial number of the relay", "Заводской номер реле"});
    add(Operator, {"Nameplate.operator", "Operator", "Исполнитель"});
    add(Comment, {"Nameplate.comment", "Comment", "Примечание"});
}

std::vector<Entry> getFilled(const Node& testObject)
{
    std::vector<Entry> filled;
    const auto* group = testObject.find(Group);
    if (!group)
        return filled;
    for (const auto& node : group->getChildren())
        if (const auto text = Kes::StringHelper::trim(node->getText()); !text.empty())
            filled.push_back({node->getId(), node->getName(), std::string(text)});
    return filled;
}

void copy(const Node& from, Node& to)
{
    const auto* group = from.find(Group);
    if (!group)
        return;
    for (const auto& node : group->getChildren())
        if (auto* other = to.find(std::string(Group) + "/" + node->getId()))
            (void)other->setValue(node->getValue());
}

} // namespace KesTree::Nameplate
