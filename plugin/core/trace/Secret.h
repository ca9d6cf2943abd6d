#pragma once

#include <string>
#include <string_view>

/// A text that nobody may read, such as an access token. While one of these exists, its text is masked in the words of
/// every exception, and so in the log, in details and in messages: gateways repeat what they were sent.
class Secret {
public:
    /// A short text is not masked, because it could be part of other words.
    explicit Secret(std::wstring i_text);
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;
    ~Secret();

private:
    std::wstring m_text;
};

/// The text with every secret in it masked. Any thread.
std::wstring WithoutSecrets(std::wstring i_text);
