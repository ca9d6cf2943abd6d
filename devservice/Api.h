#pragma once

#include "Hosts.h"
#include "HttpExchange.h"
#include "Service.h"

#include <string>
#include <string_view>

namespace DevService {

struct Route;

/// The HTTP API, version 2: finds the route, checks the token and the form of the arguments, calls the route, and turns
/// every refusal into the reply that the public service would give.
class Api {
public:
    explicit Api(Service& io_service) : m_service(io_service) {}

    Reply Answer(HttpExchange& io_exchange, Host i_host);

private:
    Reply AnswerRoute(HttpExchange& io_exchange, const Route& i_route);
    Reply CallRoute(HttpExchange& io_exchange, const Route& i_route);

    Service& m_service;
};

} // namespace DevService
