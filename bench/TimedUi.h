#pragma once

#include "Measure.h"
#include "qorv/CoClass.h"
#include "qorv/Uix.h"

namespace Bench {

/// The service "UIX" of the development host, which notes how long it takes to decode pictures.
class TimedUi final : public Qorv::CoClass<TimedUi, Qorv::IUIX_Inst> {
public:
    explicit TimedUi(Qorv::ComPtr<Qorv::IUIX_Inst> i_service) : m_service(std::move(i_service)) {}

    double DecodingSeconds() const noexcept { return m_decoding_seconds; }

    HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream* i_stream,
                                                     Qorv::IUIX_Bitmap** o_bitmap) noexcept override {
        HRESULT result = E_FAIL;
        m_decoding_seconds += Measure([&] { result = m_service->CreateBitmapFromStream(i_stream, o_bitmap); }).wall;
        return result;
    }

    HRESULT STDMETHODCALLTYPE CreateImage(const ULONG* i_ids, ULONG i_count,
                                          Qorv::IUIX_Image** o_image) noexcept override {
        return m_service->CreateImage(i_ids, i_count, o_image);
    }
    HRESULT STDMETHODCALLTYPE CreateObj(const Qorv::UIX_CreateObjParameters* i_parameters,
                                        Qorv::IUIX_Obj** o_object) noexcept override {
        return m_service->CreateObj(i_parameters, o_object);
    }
    HRESULT STDMETHODCALLTYPE AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override {
        return m_service->AddEventLoopMonitor(i_monitor);
    }
    HRESULT STDMETHODCALLTYPE RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override {
        return m_service->RemoveEventLoopMonitor(i_monitor);
    }
    HRESULT STDMETHODCALLTYPE ShowMsgBox(const Qorv::UIX_MsgBoxParameters* i_parameters,
                                         ULONG* o_answer) noexcept override {
        return m_service->ShowMsgBox(i_parameters, o_answer);
    }
    HRESULT STDMETHODCALLTYPE GetImage(Qorv::PCStr i_name, Qorv::IUIX_Image** o_image) noexcept override {
        return m_service->GetImage(i_name, o_image);
    }
    HRESULT STDMETHODCALLTYPE ShowMenu(HWND i_owner, POINT i_place, const Qorv::UIX_Command* i_commands, ULONG i_count,
                                       LONG* o_command_id) noexcept override {
        return m_service->ShowMenu(i_owner, i_place, i_commands, i_count, o_command_id);
    }

private:
    Qorv::ComPtr<Qorv::IUIX_Inst> m_service;
    double m_decoding_seconds = 0;
};

} // namespace Bench
