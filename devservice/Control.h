#pragma once

#include "HttpExchange.h"
#include "Service.h"

#include <string_view>

namespace DevService {

/// The interface for tests: recorded requests, faults, the page size of listings, tokens. Plain HTTP on the service's
/// own port; see docs/devservice.md.
class Control {
public:
    static constexpr std::string_view prefix = "/control/";

    explicit Control(Service& io_service) : m_service(io_service) {}

    Reply Answer(HttpExchange& io_exchange);

private:
    Reply Call(std::string_view i_method, std::string_view i_name, std::string_view i_body);
    Reply SetPaging(std::string_view i_body);
    Reply IssueToken(std::string_view i_body);
    Reply RevokeToken(std::string_view i_body);

    Service& m_service;
};

} // namespace DevService
