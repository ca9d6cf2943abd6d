#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace DevService {

/// A path in an account: names from the root downward, none for the root itself. They are in the composed form (NFC).
struct ServicePath {
    std::vector<std::string> names;

    /// @param i_text "/name/name"; "" is the root
    /// @param i_member the member of the error union that reports a bad path
    /// @throws RouteError i_member/malformed_path
    static ServicePath Parse(std::string_view i_text, std::string_view i_member);

    bool IsRoot() const { return names.empty(); }

    /// "/name/name", or "" for the root.
    std::string Text() const;

    ServicePath Parent() const;
    ServicePath WithName(std::string i_name) const;

    /// Whether it names the same item or one below it, ignoring case.
    bool IsWithin(const ServicePath& i_folder) const;
};

/// Whether the service refuses to store an item of that name: other programs' bookkeeping, locks and temporary files.
bool IsDisallowedName(std::string_view i_name);

/// Whether a file of that name has content to download. Documents edited online, which have these endings here, can
/// only be exported.
bool IsDownloadable(std::string_view i_name);

/// Prefix of the names that the service itself uses in a served folder; such files are never shown.
inline constexpr std::string_view hidden_prefix = ".devservice-";

/// "photo.jpg" -> "photo (1).jpg"; a folder's name has no extension.
std::string NumberedName(std::string_view i_name, unsigned i_number, bool i_is_folder);

} // namespace DevService
