#include "support/AllocationFaults.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <libxml/parser.h>
#include <new>
#include <string_view>

namespace {

constexpr std::size_t never = static_cast<std::size_t>(-1);
std::atomic<std::size_t> nUntilFault = never;
std::atomic<bool> bStruck = false;
std::atomic<bool> bLibrarySpared = false;

bool fails() noexcept {
    if (nUntilFault.load(std::memory_order_relaxed) == never)
        return false;
    if (nUntilFault.fetch_sub(1) != 0)
        return false;
    nUntilFault = never;
    bStruck = true;
    return true;
}

void* allocate(std::size_t nBytes, std::size_t nAlignment) noexcept {
    if (fails())
        return nullptr;
    // The function wants a multiple of the alignment.
    return std::aligned_alloc(nAlignment, (nBytes + nAlignment) / nAlignment * nAlignment);
}

void* require(void* pMemory) {
    if (pMemory == nullptr)
        throw std::bad_alloc();
    return pMemory;
}

/// The function of the library that an address lies in.
std::string_view functionAt(void* pAddress) noexcept {
    Dl_info info{};
    return ::dladdr(pAddress, &info) != 0 && info.dli_sname != nullptr ? info.dli_sname : "";
}

/// Where version 2.9.14 of the library itself does not stand it, and nobody can help it: as it makes room in
/// the buffer that it reads from, it goes on without a buffer (xmlParseDocument, xmlParserInputGrow,
/// xmlParserInputBufferGrow, xmlBufGrow); as it selects, it frees twice, or selects nothing and says nothing
/// (xmlXPathEval, xmlPatternGetStreamCtxt); as it compiles a schema, it follows pointers to nothing
/// (xmlSchemaParse).
bool isFaultOfTheLibrary() noexcept {
    constexpr std::array<std::string_view, 3> faulty{"xmlBufGrow", "xmlXPathEval", "xmlSchemaParse"};
    std::array<void*, 64> aFrames{};
    const int nFrames = ::backtrace(aFrames.data(), static_cast<int>(aFrames.size()));
    return std::any_of(aFrames.begin(), aFrames.begin() + nFrames, [&](void* pAddress) {
        return std::find(faulty.begin(), faulty.end(), functionAt(pAddress)) != faulty.end();
    });
}

bool failsInLibrary() noexcept {
    return nUntilFault != never && !bLibrarySpared && !isFaultOfTheLibrary() && fails();
}

void* libraryMalloc(std::size_t nBytes) noexcept {
    return failsInLibrary() ? nullptr : std::malloc(nBytes);
}

void* libraryRealloc(void* pOld, std::size_t nBytes) noexcept {
    return failsInLibrary() ? nullptr : std::realloc(pOld, nBytes);
}

char* libraryCopy(const char* pText) noexcept {
    return failsInLibrary() ? nullptr : ::strdup(pText);
}

} // namespace

void* operator new(std::size_t nBytes) {
    return require(allocate(nBytes, alignof(std::max_align_t)));
}
void* operator new(std::size_t nBytes, const std::nothrow_t&) noexcept {
    return allocate(nBytes, alignof(std::max_align_t));
}
void* operator new(std::size_t nBytes, std::align_val_t alignment) {
    return require(allocate(nBytes, static_cast<std::size_t>(alignment)));
}
void operator delete(void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, const std::nothrow_t&) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::align_val_t) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t, std::align_val_t) noexcept {
    std::free(pMemory);
}

namespace halvane::test {

void AllocationFaults::install() {
    isFaultOfTheLibrary(); // its first call allocates
    xmlMemSetup(&std::free, &libraryMalloc, &libraryRealloc, &libraryCopy);
}

AllocationFaults::AllocationFaults(std::size_t nSkipped, Library library) noexcept {
    bStruck = false;
    bLibrarySpared = library == Library::Spared;
    nUntilFault = nSkipped;
}

void AllocationFaults::end() noexcept {
    nUntilFault = never;
}

bool AllocationFaults::haveStruck() noexcept {
    return bStruck;
}

} // namespace halvane::test
