#include "afs/Session.h"

#include "afs/FileSystem.h"
#include "core/Check.h"
#include "core/Plugin.h"
#include "core/Text.h"
#include "dropbox/Web.h"

#include <algorithm>

namespace {

constexpr std::wstring_view header_name = L"Authorization:";
constexpr std::wstring_view token_type = L"Bearer ";
constexpr std::wstring_view blanks = L" \t\r\n";

std::wstring_view Trimmed(std::wstring_view i_text) noexcept {
    TRACE_FUNCTION();
    const std::size_t start = std::min(i_text.find_first_not_of(blanks), i_text.size());
    const std::size_t end = i_text.find_last_not_of(blanks) + 1; // npos + 1 is 0.
    return i_text.substr(start, std::max(start, end) - start);
}

std::wstring_view WithoutPrefix(std::wstring_view i_text, std::wstring_view i_prefix) noexcept {
    TRACE_FUNCTION();
    return EqualsNoCase(i_text.substr(0, i_prefix.size()), i_prefix) ? i_text.substr(i_prefix.size()) : i_text;
}

/// The token itself: a stored one may still have the words of the header line before it.
std::wstring BareToken(std::wstring_view i_token) {
    TRACE_FUNCTION();
    return std::wstring(Trimmed(WithoutPrefix(WithoutPrefix(i_token, header_name), token_type)));
}

std::wstring AuthorizationHeader(const std::wstring& i_token) {
    TRACE_FUNCTION();
    std::wstring header(header_name);
    return header.append(token_type).append(i_token) + L'\n';
}

} // namespace

std::shared_ptr<Session> Session::Create([[maybe_unused]] std::wstring& io_user_id, std::wstring& io_token,
                                         Plugin* plugin, Qorv::IAFS_BindContext* context) {
    TRACE_FUNCTION();
    CHECK_THROW(context != nullptr, HResultException(L"Cannot create session with null context", E_INVALIDARG));
    const std::shared_ptr<Session> session(new Session(*plugin, context));
    CHECK_HRESULT_THROW(plugin->m_afs_inst->GetFilesCache(session->m_file_system, &session->m_files_cache));
    io_token = BareToken(io_token);
    CHECK_THROW(!io_token.empty(), HResultException(L"The account is not signed in", Qorv::ErrorCanceled));
    session->m_web = Dropbox::Web::Create(AuthorizationHeader(io_token));
    return session;
}

Session::Session(Plugin& i_plugin, Qorv::IAFS_BindContext* i_context)
    : m_file_system(i_plugin.m_file_system), m_context(i_context) {
    TRACE_FUNCTION();
}

Session::~Session() {
    TRACE_FUNCTION();
}

Qorv::ComPtr<FileSystem> Session::GetFileSystem() const noexcept {
    TRACE_FUNCTION();
    return m_file_system;
}

Qorv::ComPtr<Qorv::IAFS_FilesCache> Session::GetFilesCache() const noexcept {
    TRACE_FUNCTION();
    return m_files_cache;
}

std::shared_ptr<SharePoint::Object> Session::GetWeb() {
    TRACE_FUNCTION();
    if (!m_is_account_read) {
        m_web->Refresh();
        m_is_account_read = true;
    }
    return m_web;
}

void Session::SetCommunicationKey(std::wstring i_communication_key) {
    TRACE_FUNCTION();
    m_communication_key = std::move(i_communication_key);
}
