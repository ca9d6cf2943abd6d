#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "Folder.h"
#include "HostProcess.h"

namespace Storm {

/// The changed bytes that a client's host has kept, as its lines told. They stay until they are at the service.
class KeptBytes {
public:
    /// @param i_profile where the host keeps them
    explicit KeptBytes(std::filesystem::path i_profile) : m_profile(std::move(i_profile)) {}

    /// The close of a changed document failed: its bytes are in the file that the line names.
    /// @param i_may_be_unnamed the user still has them in a file of their own
    /// @throws RuleBroken
    void OnFailedClose(const Answer& i_answer, const std::string& i_document, const Content& i_content,
                       bool i_may_be_unnamed);

    /// Follows what the lines say of earlier bytes: that they were put aside for newer ones.
    void OnNotes(const Answer& i_answer, const std::string& i_document);

    /// The document's bytes are now what the user goes on with. @returns whether they were kept for it
    bool TakeUp(const std::string& i_document, const Content& i_seen);

    /// After the end of a process that was writing a document: nothing is lost, wherever it lies. @throws RuleBroken
    /// @param i_written what it wrote, of which some may be kept as well
    void FindAgain(const std::string& i_document, const Content& i_written);

    /// All are where they were. @throws RuleBroken
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
    std::multimap<std::string, Content> m_interrupted; ///< what ended processes were writing, by document
    std::uint64_t m_count = 0;                         ///< ever
};

} // namespace Storm
