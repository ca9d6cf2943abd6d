#include "browser/BrowserRegistration.h"

#include "base/Failure.h"
#include "browser/Browser.h"

namespace DevHost {
namespace {

class BrowserFactory final : public Qorv::CoClass<BrowserFactory, IClassFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* i_outer, REFIID i_id, void** o_object) noexcept override {
        if (o_object == nullptr)
            return E_POINTER;
        *o_object = nullptr;
        if (i_outer != nullptr)
            return CLASS_E_NOAGGREGATION;
        return Answer([&] {
            const auto browser = Qorv::Create<Browser>();
            return browser != nullptr ? browser->QueryInterface(i_id, o_object) : E_OUTOFMEMORY;
        });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*i_is_locked*/) noexcept override { return S_OK; }
};

} // namespace

BrowserRegistration::BrowserRegistration() {
    const auto factory = Qorv::Create<BrowserFactory>();
    Check(CoRegisterClassObject(CLSID_WebBrowser, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie),
          L"Cannot register the browser");
}

BrowserRegistration::~BrowserRegistration() {
    CoRevokeClassObject(m_cookie);
}

} // namespace DevHost
