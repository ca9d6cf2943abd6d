#pragma once

#include "DialogSink.h"
#include "support/LiveObjectsTest.h"
#include "support/OnceInUse.h"
#include "uix/ControlName.h"
#include "uix/UiService.h"

namespace Tests {

/// A test with a dialog of the UI service in a real window.
class DialogTest : public LiveObjectsTest {
protected:
    static constexpr LONG closed = 2; ///< The result of a dialog that is closed.

    DialogTest() { OleInitialize(nullptr); } // A system object decodes pictures.
    ~DialogTest() override { OleUninitialize(); }

    void TearDown() override {
        EXPECT_EQ(CountDialogWindows(), 0);
        m_ui.Reset();
        m_sink.Reset();
        LiveObjectsTest::TearDown();
    }

    HRESULT Create(const std::string& i_items, HWND i_owner = nullptr, const std::string& i_height = "200") {
        return CreateFrom("<dialogs><dialog id=\"D\" title=\"Test\" width=\"300\" defaultItem=\"btn.ok\" "
                          "fixedArea=\"40\" scrollable=\"true\" height=\"" +
                              i_height + "\">" + i_items + "</dialog></dialogs>",
                          i_owner);
    }

    HRESULT CreateFrom(const std::string& i_document, HWND i_owner = nullptr) {
        Qorv::UIX_CreateObjParameters parameters;
        parameters.layout_data = i_document.data();
        parameters.layout_size = static_cast<ULONG>(i_document.size());
        parameters.layout_id = L"D";
        parameters.owner = i_owner;
        parameters.sink = m_sink;
        return m_ui->CreateObj(&parameters, nullptr);
    }

    LONG Run() {
        LONG result = closed;
        const Qorv::ComPtr<Qorv::IUIX_Obj> dialog = m_sink->dialog;
        EXPECT_EQ(dialog->DoModal(Qorv::UIX_ObjModal_AppModal, &result), S_OK);
        return result;
    }

    /// Runs the dialog, does something while it is open, and closes it.
    void Use(const std::function<void()>& i_body) {
        const OnceInUse use([&](HWND i_window) {
            m_sink->events.clear();
            i_body();
            return DevHost::CloseByBox(i_window, {});
        });
        EXPECT_EQ(Run(), closed);
    }

    void Destroy() {
        const Qorv::ComPtr<Qorv::IUIX_Obj> dialog = m_sink->dialog;
        EXPECT_EQ(dialog->Destroy(), S_OK);
        EXPECT_EQ(m_sink->dialog, nullptr);
    }

    template <typename Interface>
    Qorv::ComPtr<Interface> Item(Qorv::PCStr i_id) {
        Qorv::ComPtr<Interface> item;
        EXPECT_EQ(m_sink->dialog->GetItem(i_id, Interface::Id, reinterpret_cast<void**>(&item)), S_OK);
        return item;
    }

    HWND Control(const std::wstring& i_id) const { return DevHost::FindControl(m_sink->Window(), i_id); }

    /// Keys go to the focus, as from a keyboard.
    static bool Press(WPARAM i_key) {
        const HWND focus = GetFocus();
        return focus != nullptr && PostMessageW(focus, WM_KEYDOWN, i_key, 1);
    }

    /// Lets the dialog process its queue.
    void Pump() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (m_sink->dialog != nullptr && IsDialogMessageW(m_sink->Window(), &message))
                continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    void PressAndPump(WPARAM i_key) {
        EXPECT_TRUE(Press(i_key));
        Pump();
    }

    /// What the sink has been told since the last call.
    std::wstring TakeEvents() {
        Pump();
        std::wstring events;
        for (const std::wstring& event : std::exchange(m_sink->events, {}))
            events += event + L";";
        return events;
    }

    DevHost::Localization m_texts;
    Qorv::ComPtr<DevHost::UiService> m_ui = Qorv::Create<DevHost::UiService>(m_texts);
    Qorv::ComPtr<DialogSink> m_sink = Qorv::Create<DialogSink>();

private:
    static int CountDialogWindows() {
        int count = 0;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND i_window, LPARAM i_count) {
                wchar_t name[32];
                GetClassNameW(i_window, name, 32);
                *reinterpret_cast<int*>(i_count) += std::wstring_view(name) == L"#32770" ? 1 : 0;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&count));
        return count;
    }
};

} // namespace Tests
