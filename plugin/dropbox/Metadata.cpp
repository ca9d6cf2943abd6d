#include "dropbox/Metadata.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "dropbox/DateTime.h"
#include "dropbox/RemotePath.h"

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

SharePoint::ObjectInformation Dropbox::ReadWritten(const JsonValue& i_metadata, const wchar_t* i_kind,
                                                   const std::wstring& i_path) {
    TRACE_FUNCTION();
    SharePoint::ObjectInformation information = ReadMetadata(i_metadata, i_kind);
    if (information._path.empty()) // Assume the folder that was asked for, and compare names.
        information._path = i_path.substr(0, i_path.rfind(L'/') + 1) + information._name;
    CHECK_THROW(IsSamePath(i_path, information._path),
                Exception(std::wstring(L"The service has written another ") + i_kind + L" than it was asked to: " +
                          information._path));
    return information;
}
