#pragma once

#include "host/Application.h"
#include "host/memory/Faults.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane::host::memory {

class MemoryCatalogObject final : public GisCatalogObject, private Scripted {
public:
    MemoryCatalogObject(std::string sName, std::string sFullName, std::string sCategory,
                        GisCatalogObjectPtr pParent);
    /// @param pParent nothing for a root.
    [[nodiscard]] static std::shared_ptr<MemoryCatalogObject> make(std::string sName, std::string sFullName,
                                                                   std::string sCategory,
                                                                   GisCatalogObjectPtr pParent = nullptr);

    /// For the host itself: no host call.
    [[nodiscard]] const std::string& knownFullName() const noexcept { return sFullName_; }

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string fullName() const override;
    [[nodiscard]] std::string category() const override;
    [[nodiscard]] GisCatalogObjectPtr parent() const override;

private:
    std::string sName_;
    std::string sFullName_;
    std::string sCategory_;
    GisCatalogObjectPtr pParent_;
};
using MemoryCatalogObjectPtr = std::shared_ptr<MemoryCatalogObject>;

/// What the catalog holds, and the full names that were asked for, in order.
struct CatalogContents {
    std::vector<MemoryCatalogObjectPtr> aObjects;
    std::vector<std::string> aAskedNames;
};

class MemoryCatalog final : public GisCatalog, private Scripted {
public:
    MemoryCatalog(std::shared_ptr<CatalogContents> pContents, std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), pContents_(std::move(pContents)) {}

    /// Full names are matched exactly.
    [[nodiscard]] GisCatalogObjectPtr objectFromFullName(std::string_view sFullName) override;

private:
    std::shared_ptr<CatalogContents> pContents_;
};

} // namespace halvane::host::memory
