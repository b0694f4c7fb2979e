#pragma once

#include "xml/dom/libxml2/LibXml.h"

namespace halvane::dom::libxml {

/// What the library would print on the standard error stream is kept from it, on this thread and as long as
/// the scope lives. Where memory runs out the library often goes on with a part missing: the scope knows of
/// it.
class ErrorScope {
public:
    ErrorScope() noexcept;
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;
    ~ErrorScope();

    /// For errors that a handler of one parser or selection was told.
    void note(const xmlError* pError) noexcept;
    [[nodiscard]] bool ranOut() const noexcept { return bRanOut_; }
    /// To be called before anything that the library made is used. @throws std::bad_alloc
    void requireMemory() const;

private:
    xmlGenericErrorFunc fnOldGeneric_;
    void* pOldGeneric_;
    xmlStructuredErrorFunc fnOldStructured_;
    void* pOldStructured_;
    bool bRanOut_ = false;
};

} // namespace halvane::dom::libxml
