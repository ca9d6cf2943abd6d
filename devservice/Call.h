#pragma once

#include "Accounts.h"
#include "Arguments.h"
#include "HttpExchange.h"
#include "Service.h"

#include <string>

namespace DevService {

/// One call of the API with a good token and arguments that are JSON.
struct Call {
    Service& service;
    HttpExchange& exchange; ///< for the bodies that are streamed
    Account& account;
    const std::string& token;
    Arguments& arguments;
};

} // namespace DevService
