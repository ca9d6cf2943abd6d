#include "afs/Session.h"

#include "afs/FileSystem.h"
#include "auth/AccessToken.h"
#include "auth/SignIn.h"
#include "core/host/HostServices.h"
#include "core/host/LocalizedText.h"
#include "core/host/MessageBox.h"
#include "core/host/StopSignal.h"
#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "dropbox/ServiceConfiguration.h"
#include "dropbox/Web.h"

#include <algorithm>
#include <charconv>

namespace {

HResultException SignInCanceled() {
    TRACE_FUNCTION();
    return {L"The sign-in was canceled", Qorv::ErrorCanceled};
}

/// The account id as the service writes it: in the redirect of a sign-in it is percent-encoded ("dbid%3A...").
std::wstring WithoutPercentEscapes(const std::wstring& i_text) {
    TRACE_FUNCTION();
    const std::string text = ToUtf8(i_text);
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            bytes += static_cast<char>(byte);
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return FromUtf8(bytes);
}

/// Shows the sign-in dialog on the main thread. By the time it runs, nobody may be waiting for it any more.
HRESULT SignIn(Qorv::IQorv_Inst* i_host, const std::wstring& i_client_id, std::wstring& o_token,
               std::wstring& o_user_id) {
    TRACE_FUNCTION();
    HRESULT result = E_UNEXPECTED;
    std::wstring header;
    const auto signal = StopSignal::OfThread();
    CHECK_HRESULT(CallThreadSafe(i_host, [&] {
        if (signal != nullptr && signal->IsStopped())
            result = Qorv::ErrorCanceled;
        else
            result = AuthenticateDropboxOAuth2(i_host, i_client_id, header, o_user_id);
    }));
    CHECK_HRESULT(result);
    o_token = BareToken(header);
    return TRACE_RESULT(S_OK);
}

/// Tells the user that this was another user's account; true to sign in again.
bool AskToChooseUser(Qorv::IQorv_Inst* i_host, const std::wstring& i_user_name) {
    TRACE_FUNCTION();
    ULONG answer = 1;
    const std::wstring text = i_user_name.empty() ? Ui::FormatString(i_host, L"db.msg.wrongUser")
                                                  : Ui::FormatString(i_host, L"db.msg.wrongUserNamed", {i_user_name});
    CHECK_HRESULT_THROW(Ui::ShowMessageBox(i_host, text, Qorv::UIX_MsgBox_IconWarning,
                                           {L"db.btn.chooseUser", L"db.btn.cancel"}, answer));
    return answer == 0;
}

/// Where an earlier failure is the one to tell of.
void RevokeQuietly(const std::wstring& i_authorization_header) noexcept {
    TRACE_FUNCTION();
    try {
        Dropbox::RevokeToken(i_authorization_header);
    } catch (const std::exception&) { // It is in the log; the service ends the token when it expires.
    }
}

} // namespace

std::shared_ptr<Session> Session::Create(std::wstring& io_user_id, std::wstring& io_token,
                                         const Qorv::ComPtr<HostServices>& plugin, Qorv::IAFS_BindContext* context,
                                         const std::wstring& i_user_name) {
    TRACE_FUNCTION();
    CHECK_THROW(context != nullptr, HResultException(L"Cannot create session with null context", E_INVALIDARG));
    // The host may unload the plug-in at any time, which releases all of these.
    CHECK_THROW(plugin != nullptr, HResultException(E_UNEXPECTED));
    const Qorv::ComPtr<Qorv::IQorv_Inst> host = plugin->m_qorv_inst;
    const Qorv::ComPtr<FileSystem> file_system = plugin->GetFileSystem();
    CHECK_THROW(file_system != nullptr, HResultException(E_UNEXPECTED));
    const std::shared_ptr<Session> session(new Session(file_system, context));
    CHECK_HRESULT_THROW(plugin->m_afs_inst->GetFilesCache(session->m_file_system, &session->m_files_cache));

    io_token = BareToken(io_token);
    while (io_token.empty()) {
        std::wstring user_id;
        const HRESULT result = SignIn(host, session->ClientId(), io_token, user_id);
        CHECK_HRESULT_THROW(result);
        CHECK_THROW(!io_token.empty(), SignInCanceled());
        user_id = WithoutPercentEscapes(user_id);
        if ((io_user_id.empty() || io_user_id == user_id) && session->TakeSignedIn(io_token, user_id)) {
            io_user_id = user_id;
            session->m_token = io_token;
            return session;
        }
        // Another user: none of their tokens may stay valid, here or at the service.
        Dropbox::RevokeToken(AuthorizationHeader(std::exchange(io_token, {})));
        CHECK_THROW(AskToChooseUser(host, i_user_name), SignInCanceled());
    }
    session->m_token = io_token;
    session->m_web = Dropbox::Web::Create(AuthorizationHeader(io_token));
    return session;
}

/// Continues with a new token if the service confirms that it belongs to this user: the redirect that named the user
/// came through the browser. If the service cannot say, the token does not stay valid.
bool Session::TakeSignedIn(const std::wstring& i_token, const std::wstring& i_user_id) {
    TRACE_FUNCTION();
    m_web = Dropbox::Web::Create(AuthorizationHeader(i_token));
    m_is_account_read = false; // It was another user's.
    try {
        return GetWeb()->GetWeb()->GetUserInformation()._id == i_user_id;
    } catch (...) {
        RevokeQuietly(AuthorizationHeader(i_token));
        throw;
    }
}

Session::Session(Qorv::ComPtr<FileSystem> i_file_system, Qorv::IAFS_BindContext* i_context)
    : m_file_system(std::move(i_file_system)), m_context(i_context) {
    TRACE_FUNCTION();
}

Session::~Session() {
    TRACE_FUNCTION();
}

/// If the host has set a communication key, it replaces the application's.
std::wstring Session::ClientId() const {
    TRACE_FUNCTION();
    return m_communication_key.empty() ? Dropbox::ServiceConfiguration::client_id : m_communication_key;
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
