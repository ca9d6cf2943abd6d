#include "dropbox/Metadata.h"

#include "core/Text.h"
#include "core/Trace.h"
#include "dropbox/DateTime.h"

using Dropbox::Utility::JsonValue;
using Dropbox::Utility::Member;

namespace {

std::wstring OptionalText(const JsonValue& i_object, const wchar_t* i_name) {
    TRACE_FUNCTION();
    const auto member = i_object.FindMember(i_name);
    return member != i_object.MemberEnd() ? Dropbox::Utility::Text(member->value) : std::wstring{};
}

} // namespace

SharePoint::ObjectInformation Dropbox::ReadMetadata(const JsonValue& i_metadata, const wchar_t* i_forced_kind) {
    TRACE_FUNCTION();
    SharePoint::ObjectInformation information;
    information._name = Utility::Text(Member(i_metadata, L"name"));
    information._path = OptionalText(i_metadata, L"path_display");

    const std::wstring kind = i_forced_kind != nullptr ? i_forced_kind : OptionalText(i_metadata, L".tag");
    if (EqualsNoCase(kind, L"file")) {
        information._modified = Utility::ParseDateTime(Member(i_metadata, L"server_modified").GetString());
        information._size = Member(i_metadata, L"size").GetUint64();
        information._is_folder = false;
        information._is_unknown = false;
    } else if (EqualsNoCase(kind, L"folder")) {
        information._is_unknown = false;
    }
    return information;
}
