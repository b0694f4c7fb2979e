#include "component/com/ExternalDeclarations.h"

#include "base/com/Bstr.h"
#include "component/com/DualObject.h"
#include "host/IExternalProcessor.h"

namespace halvane::server {

namespace {

class ExternalProcessorObject final : public PublicObject<_IExternalProcessor, ::IExternalProcessor> {
public:
    ExternalProcessorObject() : PublicObject("Halvane.IExternalProcessor") {}

    HRESULT STDMETHODCALLTYPE Process(_dCollection** /*dColSpatialVariables*/, BSTR* sValue) override {
        if (sValue == nullptr)
            return E_POINTER;
        *sValue = nullptr;
        return guarded([&] { *sValue = com::Bstr(std::string_view()).detach(); });
    }
};

class ExternalProgIdObject final : public PublicObject<_IExternalProgID, ::IExternalProgID> {
public:
    ExternalProgIdObject() : PublicObject("Halvane.IExternalProgID") {}

    HRESULT STDMETHODCALLTYPE get_ProgID(BSTR* sProgID) override {
        if (sProgID == nullptr)
            return E_POINTER;
        *sProgID = nullptr;
        return guarded([&] { *sProgID = com::Bstr(declared_.ProgID()).detach(); });
    }

private:
    halvane::IExternalProgID declared_;
};

} // namespace

com::ComPtr<_IExternalProcessor> makeExternalProcessor() {
    return com::makeObject<ExternalProcessorObject>().query<_IExternalProcessor>();
}

com::ComPtr<_IExternalProgID> makeExternalProgID() {
    return com::makeObject<ExternalProgIdObject>().query<_IExternalProgID>();
}

} // namespace halvane::server
