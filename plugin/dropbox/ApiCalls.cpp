#include "dropbox/ApiCalls.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "dropbox/Json.h"
#include "dropbox/RemotePath.h"

#include <algorithm>

namespace {

/// Whether the service might understand the arguments. The library asserts on some texts; another parser may still
/// make sense of them.
bool MayBeGoodJson(const std::string& arguments) {
    TRACE_FUNCTION();
    try {
        Dropbox::Utility::JsonDocument document;
        document.ParseText(FromUtf8(arguments));
        return !document.HasParseError();
    } catch (const Exception&) {
        return true;
    }
}

std::wstring ArgumentHeader(const std::wstring& arguments, const std::wstring& path) {
    TRACE_FUNCTION();
    // The JSON that arrives is what counts: after a backslash in the name, an escape is no longer one.
    const std::wstring text = Dropbox::HeaderText(arguments);
    Dropbox::CheckedArguments(ToUtf8(text), {path});
    return L"Dropbox-API-Arg: " + text + L"\n";
}

} // namespace

std::string Dropbox::CheckedArguments(std::string arguments, std::initializer_list<std::wstring_view> paths) {
    TRACE_FUNCTION();
    CHECK_THROW(std::ranges::all_of(paths, IsWellFormed),
                HResultException(L"The name has a character that cannot be sent to the service: a control character, "
                                 L"or half of a character",
                                 HRESULT_FROM_WIN32(ERROR_INVALID_NAME)));
    CHECK_THROW(std::ranges::all_of(paths, CanBeSent) || !MayBeGoodJson(arguments),
                HResultException(L"The name has characters that the service would take for another item's name",
                                 HRESULT_FROM_WIN32(ERROR_INVALID_NAME)));
    return arguments;
}

std::wstring Dropbox::DownloadArgument(const std::wstring& path) {
    TRACE_FUNCTION();
    return ArgumentHeader(L"{\"path\": \"" + path + L"\"}", path);
}

std::wstring Dropbox::UploadArgument(const std::wstring& path) {
    TRACE_FUNCTION();
    return ArgumentHeader(
        L"{\"path\": \"" + path + L"\",\"mode\": \"overwrite\",\"autorename\": false,\"mute\": false}", path);
}
