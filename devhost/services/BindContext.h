#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"

namespace DevHost {

/// What a bind is done for: an account, or none to let the user choose at sign-in.
class BindContext final : public Qorv::CoClass<BindContext, Qorv::IAFS_BindContext> {
public:
    /// `i_account` may be null.
    explicit BindContext(Qorv::IAFS_AccountData* i_account = nullptr) : m_account(i_account) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID i_id, void** o_object) noexcept override {
        if (i_id == Qorv::IAFS_AccountData::Id && m_account != nullptr)
            return m_account->QueryInterface(i_id, o_object);
        return CoClass::QueryInterface(i_id, o_object);
    }

private:
    Qorv::ComPtr<Qorv::IAFS_AccountData> m_account;
};

} // namespace DevHost
