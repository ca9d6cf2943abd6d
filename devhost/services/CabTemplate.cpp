#include "services/CabTemplate.h"

#include "base/Failure.h"
#include "base/Xml.h"

#include <algorithm>
#include <array>

namespace DevHost {
namespace {

using Qorv::AUX_CabType;

constexpr std::array<std::pair<const wchar_t*, AUX_CabType>, 5> type_names{{
    {L"Int", Qorv::AUX_CabType_Int},
    {L"String", Qorv::AUX_CabType_String},
    {L"Dictionary", Qorv::AUX_CabType_Dictionary},
    {L"Array", Qorv::AUX_CabType_Array},
    {L"IUnknown", Qorv::AUX_CabType_IUnknown},
}};

[[noreturn]] void ThrowUnusable(const std::wstring& i_why) {
    throw Failure(E_INVALIDARG, L"The settings template cannot be used: " + i_why);
}

CabTemplate::Item ReadItem(const XmlElement& i_element) {
    const std::wstring type = i_element.Attribute(L"type");
    const auto found =
        std::ranges::find(type_names, type, [](const auto& i_pair) { return std::wstring(i_pair.first); });
    if (found == type_names.end())
        ThrowUnusable(L"it has the unknown type \"" + type + L"\"");
    return {i_element.Attribute(L"id"), found->second, i_element.Attribute(L"itemSet")};
}

CabTemplate::Items ReadItems(const XmlElement& i_item_set) {
    CabTemplate::Items items;
    for (const XmlElement& element : i_item_set.children) {
        if (element.name != L"Item")
            ThrowUnusable(L"an ItemSet holds the unknown element \"" + element.name + L"\"");
        items.push_back(ReadItem(element));
    }
    return items;
}

} // namespace

std::shared_ptr<const CabTemplate> CabTemplate::Parse(const void* i_data, std::size_t i_size) {
    const XmlElement document = ParseXml(i_data, i_size);
    if (document.name != L"CabTemplate")
        ThrowUnusable(L"it is a document of another kind, \"" + document.name + L"\"");
    const auto result = std::make_shared<CabTemplate>();
    for (const XmlElement& element : document.children)
        if (element.name == L"ItemSet")
            result->m_item_sets[element.Attribute(L"id")] = ReadItems(element);
        else if (element.name == L"Root")
            result->m_root = ReadItem(element);
        else
            ThrowUnusable(L"it holds the unknown element \"" + element.name + L"\"");
    if (result->m_root.type != Qorv::AUX_CabType_Dictionary)
        ThrowUnusable(L"its root is not a dictionary");
    return result;
}

const CabTemplate::Item& CabTemplate::Root(const std::wstring& i_id) const {
    if (m_root.id != i_id)
        ThrowUnusable(L"its root is not \"" + i_id + L"\"");
    return m_root;
}

const CabTemplate::Items& CabTemplate::ItemSet(const std::wstring& i_id) const {
    static const Items none;
    const auto found = m_item_sets.find(i_id);
    return found != m_item_sets.end() ? found->second : none;
}

} // namespace DevHost
