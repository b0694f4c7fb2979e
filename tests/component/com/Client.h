#pragma once

// What the clients share.

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <comdef.h>
#include <comip.h>

#include "Halvane.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::client {

_COM_SMARTPTR_TYPEDEF(_clsExport, __uuidof(_clsExport));
_COM_SMARTPTR_TYPEDEF(_dCollection, __uuidof(_dCollection));
_COM_SMARTPTR_TYPEDEF(_IExternalProcessor, __uuidof(_IExternalProcessor));
_COM_SMARTPTR_TYPEDEF(_IExternalProgID, __uuidof(_IExternalProgID));
_COM_SMARTPTR_TYPEDEF(_EntryList, __uuidof(_EntryList));
_COM_SMARTPTR_TYPEDEF(IDispatch, __uuidof(IDispatch));
_COM_SMARTPTR_TYPEDEF(IUnknown, __uuidof(IUnknown));
_COM_SMARTPTR_TYPEDEF(IEnumVARIANT, __uuidof(IEnumVARIANT));
_COM_SMARTPTR_TYPEDEF(IErrorInfo, __uuidof(IErrorInfo));

/// The component's file.
[[nodiscard]] std::filesystem::path serverFile();

/// An exported function of the loaded component; nothing when it is not loaded.
template<class Function>
[[nodiscard]] Function entryPoint(const char* sName) {
    const HMODULE hServer = GetModuleHandleW(L"Halvane.dll");
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(hServer, sName)));
}

/// What a program did that ran to its end.
struct Finished {
    DWORD nCode = 0;
    std::string sOutput;
};
/// @param sProgram looked for as the command processor does.
[[nodiscard]] Finished run(const std::wstring& sProgram, const std::vector<std::wstring>& asArguments);

/// Registers the component, or undoes it, as an installer does. @returns whether the tool was content.
bool registerServer();
bool unregisterServer();

/// Runs a client on a thread of its own while this thread serves the calls that come in for its objects.
void runBeside(DWORD nModel, const std::function<void()>& client);

/// A new object of a class, found by its programmatic identifier as scripts find it.
template<class Interface>
[[nodiscard]] _com_ptr_t<_com_IIID<Interface, &__uuidof(Interface)>> create(const wchar_t* sProgId) {
    _com_ptr_t<_com_IIID<Interface, &__uuidof(Interface)>> pObject;
    pObject.CreateInstance(sProgId);
    return pObject;
}
[[nodiscard]] inline _dCollectionPtr newCollection() {
    return create<_dCollection>(L"Halvane.dCollection");
}

/// The text of the error that the last call left on this thread; nothing when it left none.
[[nodiscard]] std::optional<std::wstring> errorText();

/// A call by name, as scripts call: `asGiven` in the order in which they are written.
struct LateCall {
    HRESULT hr = S_OK;
    _variant_t result;
    std::wstring sDescription; ///< of an exception
    SCODE code = S_OK;         ///< of an exception
};
LateCall call(IDispatch* pObject, const wchar_t* sMember, std::vector<VARIANT> aArguments,
              WORD wFlags = DISPATCH_METHOD);

/// Whether both are one object.
[[nodiscard]] bool areSame(IUnknown* pLeft, IUnknown* pRight);

/// A document of the system's parser with that content.
[[nodiscard]] IDispatchPtr documentOf(const wchar_t* sXml,
                                      const wchar_t* sProgId = L"Msxml2.DOMDocument.6.0");

/// Files of one test.
class Folder {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();

    [[nodiscard]] std::wstring path() const { return path_.wstring(); }
    std::wstring write(const std::wstring& sName, std::string_view sContent) const;
    [[nodiscard]] std::optional<std::string> read(const std::wstring& sName) const;

private:
    std::filesystem::path path_;
};

} // namespace halvane::client
