#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "Dice.h"
#include "OddReplies.h"

namespace Storm {

/// What can go wrong with a request.
enum class FaultKind {
    None,
    Delay,         ///< the reply comes late
    Drip,          ///< ... in small pieces with pauses
    Chunks,        ///< ... in chunks of odd sizes
    CutRequest,    ///< the connection ends within the request
    CutReply,      ///< the call is carried out; the connection ends within the reply, from its first byte on
    LostReply,     ///< the call is carried out, and something else replaces its reply
    OddStatus,     ///< the call is not carried out; the reply is a refusal with an odd body
    Garbage,       ///< the call is not carried out; the reply is 200 with something that is not an answer
    Unauthorized,  ///< 401
    Page,          ///< a download receives a network's own page, or nothing at all
    WrongLength,   ///< a download receives a few bytes more or less than the file has, with a length that matches them
    NearlyMissing, ///< a look-up receives what resembles "no such file"
    ManyWords,     ///< a refusal with very many words
};
inline constexpr std::size_t fault_kind_count = 14;

std::string_view NameOf(FaultKind i_kind);

/// Whether the command must succeed nevertheless.
bool IsHarmless(FaultKind i_kind);

/// The plan for one request.
struct FaultPlan {
    FaultKind kind = FaultKind::None;
    WireReply reply;                    ///< in place of the service's, for the kinds that have one
    std::uint64_t cut = 0;              ///< where, modulo the number of bytes
    bool cuts_near_begin = false;       ///< among the first bytes, where heads are
    bool is_reset = false;              ///< the connection ends with a reset
    bool is_chunked = false;            ///< for a reply that is cut
    std::size_t piece_size = 0;         ///< of drips and chunks, in bytes
    std::chrono::milliseconds pause{0}; ///< before the reply, or between the drips

    /// Whether the service never receives the request.
    bool IsMade() const;
    /// Whether another reply replaces the service's.
    bool ReplacesReply() const { return IsMade() || kind == FaultKind::LostReply; }
};

/// A plan for a request; one in three has a fault.
/// @param i_target the request's target ("/2/files/upload")
FaultPlan DrawFault(Dice& io_dice, std::string_view i_target);

} // namespace Storm
