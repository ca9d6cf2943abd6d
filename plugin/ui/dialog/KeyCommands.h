#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "ui/dialog/DialogCommand.h"

#include <functional>
#include <optional>

namespace Ui {

/// The keys, and the mouse's buttons, of a dialog's commands (the rows of `DialogCommands`), taken from the host's
/// modal loop. UI thread.
class KeyCommands final : public Qorv::CoClass<KeyCommands, Qorv::IUIX_EventLoopMonitor> {
public:
    KeyCommands(HWND i_dialog_window, Qorv::IUIX_Item* i_list, Qorv::IUIX_Item* i_combo,
                std::function<void(DialogCommand)> i_run);
    ~KeyCommands();

    /// Ignores all keys from here on.
    void Close() noexcept;

    HRESULT STDMETHODCALLTYPE OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept override;

private:
    std::optional<DialogCommand> CommandOf(const MSG& i_message) const noexcept;
    bool IsIn(KeyPlace i_place) const noexcept;

    HWND m_dialog_window;
    Qorv::ComPtr<Qorv::IUIX_Item> m_list;
    Qorv::ComPtr<Qorv::IUIX_Item> m_combo;
    std::function<void(DialogCommand)> m_run;
};

} // namespace Ui
