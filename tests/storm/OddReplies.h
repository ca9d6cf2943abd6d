#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Dice.h"

namespace Storm {

/// A reply as it goes to the client.
struct WireReply {
    unsigned status = 200;
    std::vector<std::pair<std::string, std::string>> headers; ///< without those that tell the body's length
    std::string body;
    bool is_chunked = false;
    std::string reason = "Reply";
};

/// Something in place of JSON: nothing, a page, bytes, JSON that is cut, too deep or of the wrong kinds.
std::string OddBody(Dice& io_dice);

/// A refusal of the service, of a gateway or of nobody in particular, with an odd body.
WireReply OddRefusal(Dice& io_dice);

/// 200 with an odd body.
WireReply Garbage(Dice& io_dice);

/// The page of a network that wants a sign-in, in place of whatever was asked for.
WireReply PortalPage(Dice& io_dice);

/// What looks like "there is no such file" and does not say so: a gateway's 404, a 409 with an unknown tag.
WireReply NearlyMissing(Dice& io_dice);

/// The service's own refusal of a token.
WireReply Unauthorized();

/// A refusal with very many words.
WireReply ManyWords(Dice& io_dice);

} // namespace Storm
