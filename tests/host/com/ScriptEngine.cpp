#include "host/com/ScriptEngine.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"

#include <activscp.h>

#include <string>

namespace halvane::test {

using com::Bstr;
using com::ComPtr;

namespace {

/// The surroundings of a script: none, but for a place where its errors are told.
class Site final : public IActiveScriptSite {
public:
    virtual ~Site() = default;

    /// What the last error said.
    [[nodiscard]] const std::string& error() const { return sError_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        if (iid != IID_IUnknown && iid != IID_IActiveScriptSite) {
            *ppObject = nullptr;
            return E_NOINTERFACE;
        }
        *ppObject = static_cast<IActiveScriptSite*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG nLeft = --nReferences_;
        if (nLeft == 0)
            delete this; // as the technology has it: the last reference owns the object
        return nLeft;
    }

    HRESULT STDMETHODCALLTYPE GetLCID(LCID* pLocale) override {
        *pLocale = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD, IUnknown**, ITypeInfo**) override {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* pError) override {
        EXCEPINFO exception{};
        DWORD nContext = 0;
        ULONG nLine = 0;
        LONG nColumn = 0;
        if (SUCCEEDED(pError->GetExceptionInfo(&exception))) {
            static_cast<void>(pError->GetSourcePosition(&nContext, &nLine, &nColumn));
            sError_ = "line " + std::to_string(nLine + 1) + ": " +
                      com::failureOf(exception, "the script").description();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

private:
    ULONG nReferences_ = 0;
    std::string sError_;
};

} // namespace

struct ScriptEngine::Engine {
    ComPtr<Site> pSite;
    ComPtr<IActiveScript> pScript;
    ComPtr<IActiveScriptParse> pParse;

    void parse(std::string_view sText, DWORD nFlags, VARIANT* pResult) {
        EXCEPINFO exception{};
        const HRESULT hr = pParse->ParseScriptText(com::wideOf(sText).c_str(), nullptr, nullptr, nullptr, 0,
                                                   0, nFlags, pResult, &exception);
        if (FAILED(hr) && !pSite->error().empty())
            throw Failure(FailureNumber::HostFailure, pSite->error());
        com::require(hr, "ParseScriptText");
    }
};

ScriptEngine::ScriptEngine(std::string_view sLanguage, std::string_view sScript)
    : pEngine_(std::make_unique<Engine>()) {
    CLSID clsid{};
    com::require(CLSIDFromProgID(Bstr(sLanguage).get(), &clsid), sLanguage);
    pEngine_->pSite = ComPtr<Site>(new Site);
    com::require(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                                  pEngine_->pScript.putVoid()),
                 sLanguage);
    pEngine_->pParse = pEngine_->pScript.query<IActiveScriptParse>();
    com::require(pEngine_->pParse ? S_OK : E_NOINTERFACE, "IActiveScriptParse");
    com::require(pEngine_->pScript->SetScriptSite(pEngine_->pSite.get()), "SetScriptSite");
    com::require(pEngine_->pParse->InitNew(), "InitNew");
    com::require(pEngine_->pScript->SetScriptState(SCRIPTSTATE_CONNECTED), "SetScriptState");
    run(sScript);
}

ScriptEngine::~ScriptEngine() {
    if (pEngine_->pScript)
        pEngine_->pScript->Close();
}

ComPtr<IDispatch> ScriptEngine::evaluate(std::string_view sExpression) {
    com::Variant result;
    pEngine_->parse(sExpression, SCRIPTTEXT_ISEXPRESSION, result.put());
    if (V_VT(&result.get()) != VT_DISPATCH || V_DISPATCH(&result.get()) == nullptr)
        throw Failure::of(FailureNumber::ObjectRequired);
    return ComPtr<IDispatch>(V_DISPATCH(&result.get()));
}

void ScriptEngine::run(std::string_view sStatements) {
    pEngine_->parse(sStatements, SCRIPTTEXT_ISVISIBLE, nullptr);
}

Apartment::Apartment() {
    com::require(CoInitialize(nullptr), "CoInitialize");
}

Apartment::~Apartment() {
    CoUninitialize();
}

} // namespace halvane::test
