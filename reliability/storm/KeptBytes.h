#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "Folder.h"
#include "HostProcess.h"

namespace Storm {

/// The changed bytes that a client's host has kept, according to its output. They stay until the service has them.
class KeptBytes {
public:
    /// @param i_profile where the host keeps them
    explicit KeptBytes(std::filesystem::path i_profile) : m_profile(std::move(i_profile)) {}

    /// Closing a changed document failed: its bytes are in the file that the line names.
    /// @param i_may_be_unnamed the user still has them in another file
    /// @throws RuleBroken
    void OnFailedClose(const Answer& i_answer, const std::string& i_document, const Content& i_content,
                       bool i_may_be_unnamed);

    /// Follows what the lines say about earlier bytes: that they were put aside for newer ones.
    void OnNotes(const Answer& i_answer, const std::string& i_document);

    /// The user continues with the document's current bytes. @returns whether they were kept for it
    bool TakeUp(const std::string& i_document, const Content& i_seen);

    /// After a process ended while writing a document: nothing is lost, wherever it is. @throws RuleBroken
    /// @param i_written what it wrote, some of which may be kept as well
    void FindAgain(const std::string& i_document, const Content& i_written);

    /// All of them are where they were. @throws RuleBroken
    void Check();

    std::uint64_t Count() const { return m_count; }
    std::uint64_t Present() const { return m_kept.size(); }

private:
    struct Kept {
        std::string document;
        Content content;
    };

    std::filesystem::path m_profile;
    std::map<std::filesystem::path, Kept> m_kept;
    std::multimap<std::string, Content> m_interrupted; ///< what processes were writing when they ended, by document
    std::uint64_t m_count = 0;                         ///< in total
};

} // namespace Storm
