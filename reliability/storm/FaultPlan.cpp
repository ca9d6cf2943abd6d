#include "FaultPlan.h"

#include <algorithm>
#include <vector>

namespace Storm {

namespace {

using std::chrono::milliseconds;

constexpr std::array<std::string_view, fault_kind_count> names = {
    "none",         "late replies", "slow drips", "odd chunks", "cut requests",  "cut replies",    "lost replies",
    "odd statuses", "garbage",      "401",        "pages",      "wrong lengths", "nearly missing", "many words",
};

/// The calls whose reply the client reads, so that it notices a false "done".
bool IsAnswerRead(std::string_view i_target) {
    return i_target.starts_with("/2/files/get_metadata") || i_target.starts_with("/2/files/list_folder") ||
           i_target.starts_with("/2/files/upload") || i_target.starts_with("/2/files/create_folder") ||
           i_target.starts_with("/2/users/");
}

FaultKind DrawKind(Dice& io_dice, std::string_view i_target) {
    using enum FaultKind;
    std::vector<FaultKind> kinds = {Delay,    Drip,      Chunks,    CutRequest, CutRequest,   CutReply, CutReply,
                                    CutReply, LostReply, LostReply, OddStatus,  Unauthorized, ManyWords};
    if (IsAnswerRead(i_target))
        kinds.insert(kinds.end(), {Garbage, Garbage});
    if (i_target.starts_with("/2/files/get_metadata"))
        kinds.insert(kinds.end(), {NearlyMissing, NearlyMissing});
    if (i_target.starts_with("/2/files/download"))
        kinds.insert(kinds.end(), {Page, WrongLength, WrongLength});
    return io_dice.Pick(std::span<const FaultKind>(kinds));
}

WireReply DrawReply(Dice& io_dice, FaultKind i_kind, std::string_view i_target) {
    switch (i_kind) {
    case FaultKind::LostReply:
        return IsAnswerRead(i_target) && io_dice.OneIn(2) ? Garbage(io_dice) : OddRefusal(io_dice);
    case FaultKind::OddStatus:
        return OddRefusal(io_dice);
    case FaultKind::Garbage:
        return Garbage(io_dice);
    case FaultKind::Unauthorized:
        return Unauthorized();
    case FaultKind::Page:
        return PortalPage(io_dice);
    case FaultKind::NearlyMissing:
        return NearlyMissing(io_dice);
    case FaultKind::ManyWords:
        return ManyWords(io_dice);
    default:
        return {};
    }
}

} // namespace

std::string_view NameOf(FaultKind i_kind) {
    return names.at(static_cast<std::size_t>(i_kind));
}

bool IsHarmless(FaultKind i_kind) {
    return i_kind <= FaultKind::Chunks;
}

bool FaultPlan::IsMade() const {
    using enum FaultKind;
    constexpr std::array made = {OddStatus, Garbage, Unauthorized, Page, NearlyMissing, ManyWords};
    return std::ranges::find(made, kind) != made.end();
}

FaultPlan DrawFault(Dice& io_dice, std::string_view i_target) {
    FaultPlan plan;
    if (!io_dice.OneIn(3))
        return plan;
    plan.kind = DrawKind(io_dice, i_target);
    plan.reply = DrawReply(io_dice, plan.kind, i_target);
    plan.reply.is_chunked = io_dice.OneIn(3);
    plan.cut = io_dice.Below(UINT32_MAX);
    plan.cuts_near_begin = io_dice.OneIn(3);
    plan.is_reset = io_dice.OneIn(2);
    plan.is_chunked = io_dice.OneIn(2);
    plan.piece_size = static_cast<std::size_t>(1 + io_dice.Below(io_dice.OneIn(2) ? 20 : 5'000));
    plan.pause = milliseconds(1 + io_dice.Below(io_dice.OneIn(10) ? 300 : 40));
    return plan;
}

} // namespace Storm
