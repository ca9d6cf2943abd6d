#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "ui/DialogCommand.h"

#include <functional>

namespace Ui {

/// The keys of a dialog's commands, taken from the host's modal loop: F5 and Alt+Up anywhere in the dialog, Backspace
/// and Delete in its list. UI thread.
class KeyCommands final : public Qorv::CoClass<KeyCommands, Qorv::IUIX_EventLoopMonitor> {
public:
    KeyCommands(HWND i_dialog_window, Qorv::IUIX_Item* i_list, std::function<void(DialogCommand)> i_run);
    ~KeyCommands();

    /// Hears no keys any more.
    void Close() noexcept;

    HRESULT STDMETHODCALLTYPE OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept override;

private:
    bool IsListInUse() const noexcept;

    HWND m_dialog_window;
    Qorv::ComPtr<Qorv::IUIX_Item> m_list;
    std::function<void(DialogCommand)> m_run;
};

} // namespace Ui
