#pragma once

#include <boost/asio/ssl/context.hpp>

#include <string>

namespace DevService {

/// A certificate authority that exists only while the service runs, and its certificate for the three hosts. Clients of
/// the service trust this authority, for that time and nothing else.
class TlsAuthority {
public:
    /// @throws std::runtime_error when the library refuses
    TlsAuthority();

    /// The TLS context for the server side of connections.
    boost::asio::ssl::context& ServerContext() { return m_context; }

    /// The authority's certificate.
    const std::string& Pem() const { return m_pem; }

private:
    boost::asio::ssl::context m_context;
    std::string m_pem;
};

} // namespace DevService
