// The one file in which the identifiers of the type library are defined.
#include <initguid.h>

#include "component/com/PublicClasses.h"

#include "component/com/CollectionObject.h"
#include "component/com/ExportObject.h"
#include "component/com/ExternalDeclarations.h"

#include "Halvane.h"

namespace halvane::server {

const std::array<PublicClass, 4>& publicClasses() {
    static const std::array<PublicClass, 4> aClasses = {{
        {__uuidof(::clsExport), L"clsExport", [] { return makeExportObject().query<IUnknown>(); }},
        {__uuidof(::dCollection), L"dCollection",
         [] { return makeCollectionObject(halvane::dCollection::create()).query<IUnknown>(); }},
        {__uuidof(::IExternalProcessor), L"IExternalProcessor",
         [] { return makeExternalProcessor().query<IUnknown>(); }},
        {__uuidof(::IExternalProgID), L"IExternalProgID",
         [] { return makeExternalProgID().query<IUnknown>(); }},
    }};
    return aClasses;
}

const std::array<PublicInterface, 5>& publicInterfaces() {
    static const std::array<PublicInterface, 5> aInterfaces = {{
        {__uuidof(_clsExport), L"_clsExport"},
        {__uuidof(_dCollection), L"_dCollection"},
        {__uuidof(_IExternalProcessor), L"_IExternalProcessor"},
        {__uuidof(_IExternalProgID), L"_IExternalProgID"},
        {__uuidof(_EntryList), L"_EntryList"},
    }};
    return aInterfaces;
}

GUID libraryId() {
    return LIBID_Halvane;
}

} // namespace halvane::server
