#include "core/trace/Secret.h"

#include <algorithm>
#include <mutex>
#include <vector>

// Not traced: exceptions use this.

namespace {

constexpr std::size_t shortest_secret = 16; // Characters. Tokens of the service have many more.
constexpr std::wstring_view mask = L"***";

std::mutex g_lock;
std::vector<std::wstring> g_secrets; // The same one may be in it several times.

} // namespace

Secret::Secret(std::wstring i_text) : m_text(std::move(i_text)) {
    if (m_text.size() < shortest_secret)
        return;
    const std::lock_guard guard(g_lock);
    g_secrets.push_back(m_text);
}

Secret::~Secret() {
    const std::lock_guard guard(g_lock);
    if (const auto found = std::ranges::find(g_secrets, m_text); found != g_secrets.end())
        g_secrets.erase(found);
}

std::wstring WithoutSecrets(std::wstring i_text) {
    const std::lock_guard guard(g_lock);
    for (const std::wstring& secret : g_secrets)
        for (std::size_t at = 0; (at = i_text.find(secret, at)) != std::wstring::npos; at += mask.size())
            i_text.replace(at, secret.size(), mask);
    return i_text;
}
