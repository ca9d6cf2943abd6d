#pragma once

#include <boost/asio/ssl/context.hpp>

#include <string>

namespace DevService {

/// A certificate authority that exists only while the service runs, and the certificate it gave to the three hosts.
/// Whoever wants to talk to the service trusts this authority, for that time and for nothing else.
class TlsAuthority {
public:
    /// @throws std::runtime_error when the library refuses
    TlsAuthority();

    /// The context for the server's end of connections.
    boost::asio::ssl::context& ServerContext() { return m_context; }

    /// The authority's certificate.
    const std::string& Pem() const { return m_pem; }

private:
    boost::asio::ssl::context m_context;
    std::string m_pem;
};

} // namespace DevService
