#pragma once

#include "base/com/ComPtr.h"
#include "base/com/Variant.h"

#include <string>

namespace halvane::test {

/// A client of the component's library that knows of it what its type library says.
class ComponentClient {
public:
    /// @param sLibrary the path of the library, which need not be registered.
    explicit ComponentClient(const std::string& sLibrary);
    ComponentClient(const ComponentClient&) = delete;
    ComponentClient& operator=(const ComponentClient&) = delete;
    ~ComponentClient();

    /// What is given to Export2XML.
    struct Request {
        com::ComPtr<IDispatch> pDocument;
        std::string sControlXML;
        std::string sOutPath;
        std::string sOutXML;
        com::ComPtr<IDispatch> oXMLDom;
        std::string sNodePath;
    };
    /// Creates a clsExport, exports, and releases it. @returns the error's message; "" for none.
    [[nodiscard]] std::string exportDocument(const Request& request);

    /// Whether nothing of the library is in use.
    [[nodiscard]] bool canUnload() const;

private:
    [[nodiscard]] com::ComPtr<IDispatch> createExport() const;
    template<class Function>
    [[nodiscard]] Function* entry(const char* sName) const;

    std::string sLibrary_;
    HMODULE module_ = nullptr;
};

/// A document of the system's own parser. @throws Failure when it does not load.
[[nodiscard]] com::ComPtr<IDispatch> loadSystemDocument(const std::string& sPath);

} // namespace halvane::test
