#include "dropbox/ApiCalls.h"

#include "core/Check.h"
#include "core/Text.h"
#include "dropbox/Json.h"

#include <algorithm>

bool Dropbox::SurvivesInHeader(std::wstring_view text) {
    TRACE_FUNCTION();
    if (std::ranges::any_of(text, [](wchar_t c) { return c < L' '; }))
        return false;
    if (text.empty())
        return true;
    // A code page of UTF-8 has every character but a lone surrogate, and takes no default character.
    const bool is_utf8 = GetACP() == CP_UTF8;
    BOOL is_changed = FALSE;
    const int size =
        WideCharToMultiByte(CP_ACP, is_utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, text.data(),
                            static_cast<int>(text.size()), nullptr, 0, nullptr, is_utf8 ? nullptr : &is_changed);
    return size != 0 && !is_changed;
}

namespace {

/// The arguments stand in a header unescaped. A path that would arrive as another one is refused: another file would be
/// read, or overwritten.
void CheckPath(const std::wstring& path) {
    TRACE_FUNCTION();
    CHECK_THROW(
        Dropbox::SurvivesInHeader(path),
        HResultException(L"The name cannot be sent to the service from this computer, because it has characters "
                         L"that the computer's language setting lacks: " +
                             path,
                         HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION)));
}

bool IsGoodJson(const std::string& arguments) {
    TRACE_FUNCTION();
    Dropbox::Utility::JsonDocument document;
    document.ParseText(FromUtf8(arguments));
    return !document.HasParseError();
}

std::wstring ArgumentHeader(const std::wstring& arguments, const std::wstring& path) {
    TRACE_FUNCTION();
    CheckPath(path);
    Dropbox::CheckedArguments(ToUtf8(arguments), {path});
    return L"Dropbox-API-Arg: " + arguments + L"\n";
}

} // namespace

std::string Dropbox::CheckedArguments(std::string arguments, std::initializer_list<std::wstring_view> paths) {
    TRACE_FUNCTION();
    const bool is_plain = std::ranges::all_of(
        paths, [](std::wstring_view path) { return path.find_first_of(L"\"\\") == std::wstring_view::npos; });
    CHECK_THROW(is_plain || !IsGoodJson(arguments),
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
