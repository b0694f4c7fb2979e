#include "host/memory/Catalog.h"

#include <algorithm>

namespace halvane::host::memory {

MemoryCatalogObject::MemoryCatalogObject(std::string sName, std::string sFullName, std::string sCategory,
                                         GisCatalogObjectPtr pParent)
    : sName_(std::move(sName)), sFullName_(std::move(sFullName)), sCategory_(std::move(sCategory)),
      pParent_(std::move(pParent)) {}

MemoryCatalogObjectPtr MemoryCatalogObject::make(std::string sName, std::string sFullName,
                                                 std::string sCategory, GisCatalogObjectPtr pParent) {
    return std::make_shared<MemoryCatalogObject>(std::move(sName), std::move(sFullName), std::move(sCategory),
                                                 std::move(pParent));
}

std::string MemoryCatalogObject::name() const {
    pass("GisCatalogObject", "name");
    return sName_;
}

std::string MemoryCatalogObject::fullName() const {
    pass("GisCatalogObject", "fullName");
    return sFullName_;
}

std::string MemoryCatalogObject::category() const {
    pass("GisCatalogObject", "category");
    return sCategory_;
}

GisCatalogObjectPtr MemoryCatalogObject::parent() const {
    pass("GisCatalogObject", "parent");
    return pParent_;
}

GisCatalogObjectPtr MemoryCatalog::objectFromFullName(std::string_view sFullName) {
    pass("GisCatalog", "objectFromFullName");
    pContents_->aAskedNames.emplace_back(sFullName);
    const auto& aObjects = pContents_->aObjects;
    const auto found = std::find_if(aObjects.begin(), aObjects.end(), [sFullName](const auto& pObject) {
        return pObject->knownFullName() == sFullName;
    });
    return found == aObjects.end() ? nullptr : *found;
}

} // namespace halvane::host::memory
