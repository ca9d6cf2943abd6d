#include "ItemNotes.h"

#include "Encoding.h"

namespace DevService {

std::string ItemNotes::Id(const FileStatus& i_status) {
    const std::lock_guard lock(m_mutex);
    return NoteOf(i_status).id;
}

ItemNotes::Content ItemNotes::ContentOf(const FileStatus& i_status) {
    const std::lock_guard lock(m_mutex);
    const Note& note = NoteOf(i_status);
    return note.state == i_status ? note.content : Content();
}

void ItemNotes::SetContent(const FileStatus& i_status, Content i_content) {
    const std::lock_guard lock(m_mutex);
    Note& note = NoteOf(i_status);
    note.state = i_status;
    note.content = std::move(i_content);
}

void ItemNotes::Replace(const FileStatus& i_old, const FileStatus& i_new) {
    const std::lock_guard lock(m_mutex);
    std::string id = NoteOf(i_old).id;
    m_notes.erase({i_old.device, i_old.number});
    NoteOf(i_new).id = std::move(id);
}

void ItemNotes::Forget(const FileStatus& i_status) {
    const std::lock_guard lock(m_mutex);
    m_notes.erase({i_status.device, i_status.number});
}

ItemNotes::Note& ItemNotes::NoteOf(const FileStatus& i_status) {
    constexpr std::size_t id_bytes = 16;
    Note& note = m_notes[{i_status.device, i_status.number}];
    if (note.id.empty())
        note.id = "id:" + RandomText(id_bytes);
    return note;
}

} // namespace DevService
