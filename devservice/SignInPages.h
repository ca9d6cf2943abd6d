#pragma once

#include "HttpExchange.h"
#include "Service.h"
#include "WebText.h"

#include <optional>
#include <string>
#include <string_view>

namespace DevService {

/// The pages of the web host: signing out and in, and the consent that ends in a redirect with an access token (the
/// implicit grant of OAuth 2). They are plain HTML with forms, so that the simplest browser can use them.
class SignInPages {
public:
    explicit SignInPages(Service& io_service) : m_service(io_service) {}

    Reply Answer(HttpExchange& io_exchange);

private:
    /// What an application asks for, from the address.
    struct Request {
        std::string query;
        FormFields fields;
        std::string redirect_uri;
    };

    Reply LogOut(const HttpExchange& i_exchange);
    Reply Authorize(HttpExchange& io_exchange, const Request& i_request);
    Reply SubmitLogIn(const Request& i_request, const FormFields& i_form);
    Reply SubmitConsent(const Request& i_request, const FormFields& i_form, const SignInSessions::Session& i_session);

    Reply LogInPage(const Request& i_request, std::string_view i_message, const std::string& i_email) const;
    static Reply ConsentPage(const Request& i_request, const SignInSessions::Session& i_session);

    /// The sentence that says why the request is refused; empty for a valid one.
    static std::string Check(const Request& i_request);

    /// Redirects to the application. @param i_values the fragment without "#"
    static Reply RedirectBack(const Request& i_request, std::string i_values);

    Account* FindAccount(const std::string& i_email_or_name);

    Service& m_service;
};

} // namespace DevService
