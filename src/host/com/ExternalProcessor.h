#pragma once

#include "base/com/ComPtr.h"
#include "host/IExternalProcessor.h"
#include "host/com/Guid.h"
#include "host/com/InterfaceIds.h"

namespace halvane::host::com {

inline constexpr GUID iidExternalProcessor = HALVANE_GUID(HALVANE_IID_IEXTERNALPROCESSOR);
inline constexpr GUID iidCollection = HALVANE_GUID(HALVANE_IID_DCOLLECTION);

/// The published interface of external processors as it lies in memory: a dual interface of one method. The
/// collection is passed by reference, as a pointer to its own published interface.
struct ExternalProcessorInterface : public IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Process(IDispatch** dColSpatialVariables, BSTR* sValue) = 0;
};

/// A component by its programmatic identifier, in process or local: an IExternalProcessor when it has the
/// published interface or a method "Process", else a halvane::com::ForeignObject.
/// @throws Failure CannotCreateComponent.
[[nodiscard]] ObjectPtr createByProgId(std::string_view sProgId);

/// The same for a component that exists.
[[nodiscard]] ObjectPtr processorOf(const halvane::com::ComPtr<IDispatch>& pComponent);

} // namespace halvane::host::com
