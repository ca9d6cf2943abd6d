#pragma once

#include "qorv/Afs.h"
#include "qorv/AuxService.h"
#include "qorv/Uix.h"
#include "qorv/Values.h"

namespace Ui {

/// What a caller asks of the Open and Save dialogs. Empty texts and 0 mean the default.
struct DialogParameters {
    /// Bits of `Flags`.
    static constexpr LONG SeveralNames = 1;          ///< Several quoted names may be typed.
    static constexpr LONG AskBeforeReplacing = 4;    ///< A question before an existing file is chosen to save to.
    static constexpr LONG UseDefaultExtension = 16;  ///< Typed names get the default extension, not the filter's.
    static constexpr LONG ChooseFolder = 0x40000000; ///< The provider's own bit: folders are chosen.

    /// Reads a dictionary of the host, after applying the template of the dialogs' parameters to it. An item of the
    /// wrong type leaves its field empty. Fails only if the template can't be applied.
    HRESULT LoadFromCab(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* i_cab);

    /// Writes the filter that the user ended on, and nothing else: every other item keeps the caller's value.
    HRESULT SaveToCab(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* i_cab) const;

    LONG Flags = 0;
    Qorv::Bstr Title;            ///< Of the window; empty for the layout's own.
    Qorv::Bstr ActionBtnTitle;   ///< Of the OK button.
    Qorv::Bstr CancelBtnTitle;   ///< Of the Cancel button.
    Qorv::Bstr SettingsBtnTitle; ///< Of the options button.
    Qorv::Bstr FileFilters;      ///< "PDF files|*.pdf;*.fdf|All files|*.*|"
    LONG FileFilterIndex = 0;    ///< The selected filter, from 0.
    Qorv::Bstr DefaultExt;       ///< Without a dot.
    Qorv::ComPtr<Qorv::IAFS_Name> InitialPathName;
    Qorv::Bstr InitialFileName; ///< What the name box begins with.
    Qorv::ComPtr<Qorv::IUIX_SettingsBtnCallbacks> SettingsBtnCallbacks;
};

} // namespace Ui
