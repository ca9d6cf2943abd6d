#include "SignInPages.h"

#include "Encoding.h"
#include "Hosts.h"

#include <algorithm>
#include <chrono>

namespace DevService {
namespace {

constexpr std::string_view authorize_path = "/oauth2/authorize";
constexpr std::string_view receiver_path = "/1/oauth2/redirect_receiver";
constexpr std::string_view cookie_name = "devservice_session";
constexpr std::string_view scope =
    "account_info.read files.content.read files.content.write files.metadata.read files.metadata.write";
constexpr std::chrono::seconds token_lifetime = std::chrono::hours(4);

/// @param i_content HTML
Reply Page(std::string_view i_title, std::string_view i_content, unsigned i_status = 200) {
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>";
    html.append(EscapeHtml(i_title))
        .append("</title>\n<style>\n"
                "body { font: 16px sans-serif; max-width: 28em; margin: 3em auto; }\n"
                "label, input { display: block; margin: 0.5em 0; }\n"
                ".message { color: #a00; }\n"
                ".note { color: #666; font-size: 80%; }\n"
                "</style>\n</head>\n<body>\n<h1>");
    html.append(EscapeHtml(i_title)).append("</h1>\n").append(i_content).append("</body>\n</html>\n");
    Reply reply = Reply::Html(html, i_status);
    reply.headers.emplace_back("Cache-Control", "no-store");
    return reply;
}

Reply Redirect(std::string_view i_location) {
    Reply reply;
    reply.status = 302;
    reply.headers = {{"Location", std::string(i_location)}, {"Cache-Control", "no-store"}};
    return reply;
}

std::string UrlOf(std::string_view i_path) {
    return "https://" + std::string(web_host) + std::string(i_path);
}

/// A cookie for this host alone: one for the entire domain would also be sent with API calls.
Header CookieHeader(std::string_view i_value, std::string_view i_attributes) {
    std::string cookie(cookie_name);
    cookie.append("=").append(i_value).append("; Path=/; Secure; HttpOnly").append(i_attributes);
    return {"Set-Cookie", cookie};
}

std::string SessionCookie(const HttpExchange& i_exchange) {
    const std::string header(i_exchange.HeaderValue("Cookie").value_or(""));
    const std::string name = std::string(cookie_name) + "=";
    for (std::size_t start = 0; start < header.size();) {
        const std::size_t end = std::min(header.find(';', start), header.size());
        start = std::min(header.find_first_not_of(' ', start), end);
        if (header.compare(start, name.size(), name) == 0)
            return header.substr(start + name.size(), end - start - name.size());
        start = end + 1;
    }
    return {};
}

std::string Field(const FormFields& i_fields, const char* i_name) {
    const auto field = i_fields.find(i_name);
    return field == i_fields.end() ? std::string() : field->second;
}

std::string FormStart(const std::string& i_query) {
    return "<form method=\"post\" action=\"" + EscapeHtml(std::string(authorize_path) + "?" + i_query) + "\">\n";
}

} // namespace

Reply SignInPages::Answer(HttpExchange& io_exchange) {
    const std::string target(io_exchange.Target());
    const std::size_t path_end = std::min(target.find('?'), target.size());
    const std::string path = target.substr(0, path_end);
    if (path == authorize_path) {
        const std::string query = target.substr(std::min(path_end + 1, target.size()));
        FormFields fields = ParseForm(query);
        std::string redirect_uri = Field(fields, "redirect_uri");
        return Authorize(io_exchange, {query, std::move(fields), std::move(redirect_uri)});
    }
    if (path == "/logout")
        return LogOut(io_exchange);
    if (path == "/login")
        return Page("You are signed out",
                    "<p>An application that wants to use your files leads you to its sign-in.</p>\n");
    if (path == receiver_path)
        return Page("Done", "<p>You can go back to the application now.</p>\n");
    if (path == "/")
        return Page("Development service", "<p>This machine's own storage service is running.</p>\n");
    return Page("Error (404)", "<p>We can't find the page you're looking for.</p>\n", 404);
}

Reply SignInPages::LogOut(const HttpExchange& i_exchange) {
    m_service.sign_ins.End(SessionCookie(i_exchange));
    Reply reply = Redirect(UrlOf("/login"));
    reply.headers.push_back(CookieHeader("", "; Max-Age=0"));
    return reply;
}

Reply SignInPages::Authorize(HttpExchange& io_exchange, const Request& i_request) {
    if (const std::string fault = Check(i_request); !fault.empty())
        return Page("Error (400)", "<p>" + EscapeHtml(fault) + "</p>\n", 400);
    const auto session = m_service.sign_ins.Find(SessionCookie(io_exchange));
    if (io_exchange.Method() == "GET")
        return session ? ConsentPage(i_request, *session) : LogInPage(i_request, "", "");
    const FormFields form = ParseForm(io_exchange.ReadWholeBody());
    if (!form.contains("form_key"))
        return SubmitLogIn(i_request, form);
    if (!session || Field(form, "form_key") != session->form_key)
        return LogInPage(i_request, "Please sign in again.", "");
    return SubmitConsent(i_request, form, *session);
}

std::string SignInPages::Check(const Request& i_request) {
    constexpr std::size_t max_state_size = 500;
    if (Field(i_request.fields, "response_type") != "token")
        return "Invalid response_type: this service grants \"token\" only.";
    if (Field(i_request.fields, "client_id").empty())
        return "Missing client_id.";
    if (i_request.redirect_uri != UrlOf(receiver_path))
        return "Invalid redirect_uri: \"" + i_request.redirect_uri + "\". It must be " + UrlOf(receiver_path) + ".";
    if (Field(i_request.fields, "state").size() > max_state_size)
        return "Invalid state: it is longer than 500 bytes.";
    return {};
}

Reply SignInPages::SubmitLogIn(const Request& i_request, const FormFields& i_form) {
    const std::string email = Field(i_form, "email");
    Account* const account = FindAccount(email);
    if (!account || Field(i_form, "password") != account->password)
        return LogInPage(i_request, "Wrong email or password. Please try again.", email);
    Reply reply = Redirect(UrlOf(authorize_path) + "?" + i_request.query);
    reply.headers.push_back(CookieHeader(m_service.sign_ins.Begin(*account), ""));
    return reply;
}

Reply SignInPages::SubmitConsent(const Request& i_request, const FormFields& i_form,
                                 const SignInSessions::Session& i_session) {
    if (!i_form.contains("allow"))
        return RedirectBack(i_request, "error_description=The+user+chose+not+to+give+your+app+access+to+their+Dropbox+"
                                       "account.&error=access_denied");
    Account& account = *i_session.account;
    std::string uid = "1";
    for (std::size_t i = 0; i < m_service.accounts.Count(); ++i)
        if (&m_service.accounts.At(i) == &account)
            uid = std::to_string(i + 1);
    return RedirectBack(
        i_request, "uid=" + uid + "&access_token=" + EscapeUrl(m_service.accounts.IssueToken(account, token_lifetime)) +
                       "&expires_in=" + std::to_string(token_lifetime.count()) +
                       "&token_type=bearer&scope=" + EscapeUrl(scope) + "&account_id=" + EscapeUrl(account.id));
}

Reply SignInPages::RedirectBack(const Request& i_request, std::string i_values) {
    if (const std::string state = Field(i_request.fields, "state"); !state.empty())
        i_values = "state=" + EscapeUrl(state) + "&" + i_values;
    return Redirect(i_request.redirect_uri + "#" + i_values);
}

Reply SignInPages::LogInPage(const Request& i_request, std::string_view i_message, const std::string& i_email) const {
    std::string content;
    if (!i_message.empty())
        content += "<p class=\"message\">" + EscapeHtml(i_message) + "</p>\n";
    content += "<p>Sign in to link the application \"" + EscapeHtml(Field(i_request.fields, "client_id")) + "\".</p>\n";
    content += FormStart(i_request.query);
    content += "<label for=\"email\">Email</label>\n<input type=\"text\" id=\"email\" name=\"email\" value=\"" +
               EscapeHtml(i_email) + "\">\n";
    content += "<label for=\"password\">Password</label>\n"
               "<input type=\"password\" id=\"password\" name=\"password\">\n"
               "<input type=\"submit\" name=\"log_in\" value=\"Sign in\">\n</form>\n";
    content +=
        "<p class=\"note\">This is a development service on your own machine. The password is \"sample\", unless "
        "it was started with another. Its accounts:</p>\n<ul class=\"note\">\n";
    for (std::size_t i = 0; i < m_service.accounts.Count(); ++i) {
        const Account& account = m_service.accounts.At(i);
        content += "<li>" + EscapeHtml(account.email) + " (" + EscapeHtml(account.name) + ")</li>\n";
    }
    return Page("Sign in", content + "</ul>\n");
}

Reply SignInPages::ConsentPage(const Request& i_request, const SignInSessions::Session& i_session) {
    std::string content = "<p>The application \"" + EscapeHtml(Field(i_request.fields, "client_id")) +
                          "\" would like to see and change the files of " + EscapeHtml(i_session.account->name) + " (" +
                          EscapeHtml(i_session.account->email) + ").</p>\n";
    content += FormStart(i_request.query);
    content += "<input type=\"hidden\" name=\"form_key\" value=\"" + EscapeHtml(i_session.form_key) + "\">\n" +
               "<input type=\"submit\" name=\"allow\" value=\"Allow\">\n"
               "<input type=\"submit\" name=\"cancel\" value=\"Cancel\">\n</form>\n";
    return Page("Allow access?", content);
}

Account* SignInPages::FindAccount(const std::string& i_email_or_name) {
    const std::string wanted = ToLower(i_email_or_name);
    for (std::size_t i = 0; i < m_service.accounts.Count(); ++i) {
        Account& account = m_service.accounts.At(i);
        if (wanted == ToLower(account.email) || wanted == ToLower(account.name))
            return &account;
    }
    return nullptr;
}

} // namespace DevService
