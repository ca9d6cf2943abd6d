#include "ScriptedRemote.h"

#include <algorithm>
#include <cstring>

namespace Tests {
namespace {

constexpr HRESULT end_of_file = static_cast<HRESULT>(0x80070026);

} // namespace

HRESULT STDMETHODCALLTYPE ScriptedCallback::Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read,
                                                 Details* out_error_details, Cancel*) noexcept {
    m_remote.calls += "read " + std::to_string(pos) + ";";
    const std::string& bytes = m_remote.files.at(m_name->location);
    if (pos != m_position || (m_remote.fail_read_at && *m_remote.fail_read_at == pos)) {
        m_remote.fail_read_at.reset();
        m_position = 0;
        return Fail(out_error_details, L"The download broke.");
    }
    if (pos == bytes.size())
        return end_of_file;
    *out_read = static_cast<ULONG>(std::min<std::uint64_t>(size, bytes.size() - pos));
    std::memcpy(data, bytes.data() + pos, *out_read);
    m_position += *out_read;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptedCallback::Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                                  Details* out_error_details, Cancel*) noexcept {
    m_remote.calls += "write " + std::to_string(pos) + "+" + std::to_string(size) + ";";
    if (m_remote.fail_write_at && *m_remote.fail_write_at == pos)
        return Fail(out_error_details, L"The upload broke.");
    if (pos != m_position || pos + size > m_announced)
        return Fail(out_error_details, L"The upload is out of order.");
    m_upload.append(static_cast<const char*>(data), size);
    m_position += size;
    *out_written = size;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptedCallback::SetSize(ULONGLONG new_size, Details*, Cancel*) noexcept {
    m_remote.calls += "size " + std::to_string(new_size) + ";";
    m_announced = new_size;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptedCallback::GetSize(ULONGLONG* out_size, Details*, Cancel*) noexcept {
    *out_size = m_remote.files.at(m_name->location).size();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptedCallback::BeginWrite(Details*, Cancel*) noexcept {
    m_remote.calls += "begin;";
    m_position = 0;
    m_upload.clear();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptedCallback::EndWrite(Details* out_error_details, Cancel*) noexcept {
    m_remote.calls += "end;";
    m_position = 0;
    if (m_remote.fail_end || m_upload.size() != m_announced)
        return Fail(out_error_details, L"The upload broke at its end.");
    m_remote.files[m_name->location] = m_upload;
    return S_OK;
}

HRESULT ScriptedCallback::Fail(Details* o_details, const wchar_t* i_text) noexcept {
    if (o_details != nullptr)
        o_details->SetError(connection_broke, i_text);
    return connection_broke;
}

} // namespace Tests
