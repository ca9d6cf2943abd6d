#include "dropbox/ApiCalls.h"

#include "core/Check.h"

#include <algorithm>

namespace {

/// Whether a header carries the text as it is: WinINet converts headers to the machine's code page, and a control
/// character would end the line.
bool SurvivesInHeader(const std::wstring& text) {
    TRACE_FUNCTION();
    if (std::ranges::any_of(text, [](wchar_t c) { return c < L' '; }))
        return false;
    if (text.empty() || GetACP() == CP_UTF8)
        return true;
    BOOL is_changed = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                                         nullptr, 0, nullptr, &is_changed);
    return size != 0 && !is_changed;
}

/// The arguments stand in a header unescaped. A path that would arrive as another one is refused: another file would be
/// read, or overwritten.
void CheckPath(const std::wstring& path) {
    TRACE_FUNCTION();
    CHECK_THROW(
        SurvivesInHeader(path),
        HResultException(L"The name cannot be sent to the service from this computer, because it has characters "
                         L"that the computer's language setting lacks: " +
                             path,
                         HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION)));
}

} // namespace

std::wstring Dropbox::DownloadArgument(const std::wstring& path) {
    TRACE_FUNCTION();
    CheckPath(path);
    return L"Dropbox-API-Arg: {\"path\": \"" + path + L"\"}\n";
}

std::wstring Dropbox::UploadArgument(const std::wstring& path) {
    TRACE_FUNCTION();
    CheckPath(path);
    return L"Dropbox-API-Arg: {\"path\": \"" + path +
           L"\",\"mode\": \"overwrite\",\"autorename\": false,\"mute\": false}\n";
}
