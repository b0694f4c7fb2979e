#include "xml/dom/libxml2/LibXmlErrors.h"

#include <libxml/globals.h>
#include <new>

namespace halvane::dom::libxml {

namespace {

void ignoreMessage(void*, const char*, ...) noexcept {} // NOLINT(cert-dcl50-cpp): the library's signature

void noteError(void* pScope, xmlErrorPtr pError) noexcept {
    static_cast<ErrorScope*>(pScope)->note(pError);
}

} // namespace

ErrorScope::ErrorScope() noexcept
    : fnOldGeneric_(xmlGenericError), pOldGeneric_(xmlGenericErrorContext),
      fnOldStructured_(xmlStructuredError), pOldStructured_(xmlStructuredErrorContext) {
    xmlSetGenericErrorFunc(nullptr, &ignoreMessage);
    xmlSetStructuredErrorFunc(this, &noteError);
}

ErrorScope::~ErrorScope() {
    xmlSetGenericErrorFunc(pOldGeneric_, fnOldGeneric_);
    xmlSetStructuredErrorFunc(pOldStructured_, fnOldStructured_);
}

void ErrorScope::note(const xmlError* pError) noexcept {
    bRanOut_ = bRanOut_ || (pError != nullptr && pError->code == XML_ERR_NO_MEMORY);
}

void ErrorScope::requireMemory() const {
    if (bRanOut_)
        throw std::bad_alloc();
}

} // namespace halvane::dom::libxml
