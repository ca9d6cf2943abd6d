#pragma once

#include "IncomingFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace DevService {

/// The uploads of one account that come in several requests. Each lives until it is finished or the service ends; the
/// bytes of an interrupted request are kept, and the client learns their number from the offset. Thread-safe.
class UploadSessions {
    struct Session {
        explicit Session(const std::filesystem::path& i_folder) : file(i_folder) {}

        std::mutex mutex;
        IncomingFile file;
        bool is_closed = false;
    };

public:
    /// A session locked for one request while this exists.
    class Locked {
    public:
        explicit Locked(std::shared_ptr<Session> i_session)
            : m_session(std::move(i_session)), m_lock(m_session->mutex) {}

        IncomingFile& File() const { return m_session->file; }

        /// @throws RouteError closed
        void RequireOpen() const;
        /// @throws RouteError lookup_failed/not_closed
        void RequireClosed() const;
        void Close(bool i_is_closed) const { m_session->is_closed = i_is_closed; }

    private:
        std::shared_ptr<Session> m_session;
        std::unique_lock<std::mutex> m_lock;
    };

    /// @param i_folder where the bytes are collected
    explicit UploadSessions(std::filesystem::path i_folder) : m_folder(std::move(i_folder)) {}

    /// Begins a session. @returns its id
    std::string Start();

    /// @param i_offset the bytes that the client believes are there
    /// @param i_member the member of the route's error union that reports lookups; empty: the union itself
    /// @throws RouteError not_found, incorrect_offset
    Locked Lock(const std::string& i_id, std::uint64_t i_offset, std::string_view i_member);

    void Forget(const std::string& i_id);

private:
    std::filesystem::path m_folder;
    std::mutex m_mutex;
    std::unordered_map<std::string, std::shared_ptr<Session>> m_sessions;
};

} // namespace DevService
