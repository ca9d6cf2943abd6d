#pragma once

#include "ScriptedRemote.h"
#include "qorv/Values.h"
#include "services/ErrorDetails.h"
#include "services/FilesCache.h"
#include "support/Content.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace Tests {

using DevHost::FilesCache;
using Qorv::ComPtr;

constexpr ULONG piece = 64 * 1024;
constexpr ULONG read_only = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_OpenExisting;
constexpr ULONG read_write = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_OpenAlways;
constexpr ULONG replace = Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_CreateAlways;
const std::wstring location = L"dropbox://id/Docs/Report.pdf";

/// A file that is open on an entry, as the plug-in opens one.
struct OpenFile {
    ComPtr<ScriptedFile> file;
    ComPtr<Qorv::IAFS_FileCache> entry;
    HRESULT queried = E_UNEXPECTED;
};

class FilesCacheTest : public testing::Test {
protected:
    FilesCacheTest() { Restart(); }
    ~FilesCacheTest() override { m_cache->Close(); }

    /// Ends the host's cache, and starts a new one in the same folder.
    void Restart() {
        if (m_cache != nullptr)
            m_cache->Close();
        m_cache = Qorv::Create<FilesCache>(m_folder.Path() / "cache",
                                           [this](const std::wstring& i_notice) { m_notices.push_back(i_notice); });
    }

    OpenFile Open(ULONG i_flags, const std::wstring& i_location = location) {
        const auto name = Qorv::Create<ScriptedName>(m_file_system, i_location);
        OpenFile opened;
        opened.file = Qorv::Create<ScriptedFile>(name);
        opened.queried = m_cache->QueryCache(opened.file, i_flags, &opened.entry);
        if (opened.queried == S_FALSE) {
            const bool is_new =
                (i_flags & Qorv::AFS_OpenFile_CreateAlways) != 0 || !m_remote.files.contains(i_location);
            const auto callback = Qorv::Create<ScriptedCallback>(m_remote, name);
            EXPECT_EQ(m_cache->CreateNewCache(opened.file, callback, i_flags,
                                              is_new ? 0 : m_remote.files.at(i_location).size(), VARIANT_FALSE, 0, 0,
                                              &opened.entry),
                      S_OK);
        }
        return opened;
    }

    HRESULT Close(OpenFile& io_file) {
        m_details = Qorv::Create<DevHost::ErrorDetails>();
        const HRESULT result = m_cache->CloseCache(io_file.file, io_file.entry, m_details, nullptr);
        io_file.entry.Reset();
        return result;
    }

    /// Reads up to `i_size` bytes at a position.
    static std::string Read(const OpenFile& i_file, ULONGLONG i_position, ULONG i_size) {
        std::string bytes(i_size, '\0');
        ULONG read = 0;
        EXPECT_EQ(i_file.entry->Read(i_position, bytes.data(), i_size, &read, nullptr, nullptr), S_OK);
        bytes.resize(read);
        return bytes;
    }

    static void Write(const OpenFile& i_file, ULONGLONG i_position, const std::string& i_bytes) {
        ULONG written = 0;
        EXPECT_EQ(i_file.entry->Write(i_position, i_bytes.data(), static_cast<ULONG>(i_bytes.size()), &written, nullptr,
                                      nullptr),
                  S_OK);
        EXPECT_EQ(written, i_bytes.size());
    }

    std::string TakeCalls() { return std::exchange(m_remote.calls, {}); }

    /// The files in the cache's folder, not those in folders below.
    std::vector<std::filesystem::path> CacheFiles() const {
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path() / "cache"))
            if (entry.is_regular_file())
                files.push_back(entry.path());
        return files;
    }

    /// The content of the replaced files, in alphabetical order.
    std::vector<std::string> Replaced() const {
        std::vector<std::string> contents;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path() / "cache" / "replaced"))
            contents.push_back(ReadBytes(entry.path()));
        std::ranges::sort(contents);
        return contents;
    }

    /// A document was changed, and its upload failed when it was closed.
    void LeaveUnsentChange(const std::string& i_bytes, const std::wstring& i_location = location) {
        m_remote.fail_end = true;
        OpenFile file = Open(replace, i_location);
        Write(file, 0, i_bytes);
        EXPECT_EQ(Close(file), connection_broke);
        m_remote.fail_end = false;
        TakeCalls();
    }

    TemporaryFolder m_folder;
    ScriptedRemote m_remote;
    ComPtr<ScriptedFileSystem> m_file_system = Qorv::Create<ScriptedFileSystem>(m_remote);
    std::vector<std::wstring> m_notices;
    ComPtr<FilesCache> m_cache;
    ComPtr<DevHost::ErrorDetails> m_details;
};

} // namespace Tests
