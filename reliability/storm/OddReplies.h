#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Dice.h"

namespace Storm {

/// A reply as it is sent to the client.
struct WireReply {
    unsigned status = 200;
    std::vector<std::pair<std::string, std::string>> headers; ///< without those that give the body's length
    std::string body;
    bool is_chunked = false;
    std::string reason = "Reply";
};

/// Something instead of JSON: nothing, a page, bytes, or JSON that is cut off, too deep or of the wrong types.
std::string OddBody(Dice& io_dice);

/// A refusal from the service, a gateway or an unknown sender, with an odd body.
WireReply OddRefusal(Dice& io_dice);

/// 200 with an odd body.
WireReply Garbage(Dice& io_dice);

/// The page of a network that requires a sign-in, whatever was requested.
WireReply PortalPage(Dice& io_dice);

/// Resembles "there is no such file" without saying so: a gateway's 404, a 409 with an unknown tag.
WireReply NearlyMissing(Dice& io_dice);

/// The service's own refusal of a token.
WireReply Unauthorized();

/// A refusal with very many words.
WireReply ManyWords(Dice& io_dice);

} // namespace Storm
