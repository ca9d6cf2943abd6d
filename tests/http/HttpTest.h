#pragma once

#include "http/HttpSession.h"
#include "support/DevService.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "support/TemporaryFolder.h"

#include <string>

/// A session with the development service's API host, with its token.
class HttpTest : public Tests::ServiceTest {
protected:
    HttpTest() { m_session.SetAuthorizationHeader(Tests::Service::AuthorizationHeader()); }

    static Http::Session Open(const std::wstring& i_host, const Http::Credentials& i_server = {},
                              const Http::Credentials& i_proxy = {}) {
        return Http::Session::Create(L"https://", i_host, i_server, i_proxy);
    }

    /// Sends a call that only faults reply to.
    Http::Response Send(const char* i_body = nullptr) { return Send(m_session, i_body); }
    static Http::Response Send(Http::Session& io_session, const char* i_body = nullptr) {
        const wchar_t* accept_types[] = {L"*/*", nullptr};
        return io_session.SendRequest(L"2/test", accept_types, nullptr, i_body);
    }

    static std::string ReadAll(Http::Response& io_response, std::size_t i_piece_size = 65536) {
        std::string bytes;
        std::string piece(i_piece_size, '\0');
        while (const std::uint32_t size = io_response.Read(piece.data(), piece.size()))
            bytes.append(piece, 0, size);
        return bytes;
    }

    Http::Session m_session = Open(L"" DROPBOX_API_HOST);
    Tests::LogCapture m_log;
};
