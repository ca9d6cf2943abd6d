#include "KeptBytes.h"

#include <algorithm>
#include <vector>

#include "Rules.h"

namespace Storm {

namespace fs = std::filesystem;

void KeptBytes::OnFailedClose(const Answer& i_answer, const std::string& i_document, const Content& i_content,
                              bool i_may_be_unnamed) {
    const fs::path path = PathBehind(FailureLine(i_answer), "The changed file is kept as ");
    if (path.empty() && i_may_be_unnamed)
        return;
    if (path.empty())
        throw RuleBroken("nobody says where the changed bytes are:\n" + i_answer.Text());
    const Content kept = ReadContent(path);
    if (!AreEqual(kept, i_content))
        throw RuleBroken("the kept file " + path.string() + " has " + Describe(kept) + " instead of " +
                         Describe(i_content) + ":\n" + i_answer.Text());
    m_kept[path] = {i_document, i_content};
    ++m_count;
}

void KeptBytes::OnNotes(const Answer& i_answer, const std::string& i_document) {
    for (const std::string& line : i_answer.notes) {
        const fs::path copy = PathBehind(line, "are replaced; a copy is kept as ");
        if (copy.empty())
            continue;
        const Content content = ReadContent(copy);
        if (content == nullptr)
            throw RuleBroken("the copy is not there: " + line);
        std::erase_if(m_kept, [&](const auto& i_kept) { // A rename may have moved them.
            return AreEqual(i_kept.second.content, content) && !fs::exists(i_kept.first);
        });
        m_kept[copy] = {i_document, content};
    }
}

bool KeptBytes::TakeUp(const std::string& i_document, const Content& i_seen) {
    const auto taken = std::erase_if(m_kept, [&](const auto& i_kept) {
        return AreEqual(i_kept.second.content, i_seen) && !AreEqual(ReadContent(i_kept.first), i_seen);
    });
    const auto [begin, end] = m_interrupted.equal_range(i_document);
    const bool is_part = i_seen != nullptr &&
                         std::any_of(begin, end, [&](const auto& i_one) { return i_one.second->starts_with(*i_seen); });
    return taken > 0 || is_part;
}

void KeptBytes::FindAgain(const std::string& i_document, const Content& i_written) {
    m_interrupted.emplace(i_document, i_written);
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(m_profile))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    const std::map<fs::path, Kept> before = m_kept;
    for (const auto& entry : before) {
        const auto& path = entry.first;
        const Kept& kept = entry.second;
        if (AreEqual(ReadContent(path), kept.content)) // Includes other documents: a move may have moved them.
            continue;
        const auto found = std::ranges::find_if(
            files, [&](const fs::path& i_file) { return AreEqual(ReadContent(i_file), kept.content); });
        if (found == files.end())
            throw RuleBroken("the end of a process has lost " + path.string());
        m_kept.erase(path);
        m_kept[*found] = kept;
    }
}

void KeptBytes::Check() {
    for (const auto& [path, kept] : m_kept)
        if (const Content now = ReadContent(path); !AreEqual(now, kept.content))
            throw RuleBroken("the kept bytes of " + kept.document + " in " + path.string() + " are no longer " +
                             Describe(kept.content) + " but " + Describe(now));
}

} // namespace Storm
