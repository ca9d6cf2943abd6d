#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Folder.h"

namespace Storm {

/// A file that several clients write and read at the same time: what it may contain.
class SharedFile {
public:
    /// A new batch begins with this content.
    void Begin(Content i_content);

    /// Before a client writes.
    void OnWriting(const std::string& i_client, Content i_content);
    /// Its last write is acknowledged, so its earlier ones are over.
    void OnWritten(const std::string& i_client);

    /// Whether a reader may see this now.
    bool MayBeSeen(const Content& i_content) const;
    /// Whether the file may contain this once all writing has ended.
    bool MayStay(const Content& i_content) const;

private:
    mutable std::mutex m_mutex;
    std::vector<Content> m_ever; ///< in this batch
    Content m_first;
    bool m_is_first_over = false;
    std::map<std::string, std::vector<Content>>
        m_last; ///< of each client: the last acknowledged one and those after it
};

} // namespace Storm
