// Counts what the static initialisers of our layers allocate, all of which are linked into this program:
// before main there is nobody yet who could tell that memory has run out. What the libraries' own allocate is
// theirs.

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <execinfo.h>
#include <new>
#include <span>
#include <string>
#include <string_view>

namespace {

constinit std::atomic<bool> bStarted = false;
constinit bool bCounting = false; // what counts allocates, too
constinit int nOurs = 0;

const void* baseOf(const void* pAddress) {
    Dl_info info{};
    return ::dladdr(pAddress, &info) == 0 ? nullptr : info.dli_fbase;
}

/// The reader of arguments is a library all of whose code comes with its headers.
bool isOfHeaderLibrary(const void* pAddress) {
    Dl_info info{};
    return ::dladdr(pAddress, &info) != 0 && info.dli_sname != nullptr &&
           std::string_view(info.dli_sname).find("3CLI") != std::string_view::npos;
}

void print(std::span<void* const> aFrames) {
    std::fputs("an initialiser allocates:\n", stderr);
    ::backtrace_symbols_fd(aFrames.data(), static_cast<int>(aFrames.size()), 2);
}

/// An initialiser of this program stands between the function that starts it and the allocation.
[[gnu::noinline]] void count() {
    if (bStarted || bCounting)
        return;
    bCounting = true;
    std::array<void*, 64> aFrames{};
    const std::span aAll(aFrames.data(),
                         static_cast<std::size_t>(::backtrace(aFrames.data(), aFrames.size())));
    const void* const pProgram = baseOf(reinterpret_cast<const void*>(&baseOf));
    int nOfProgram = 0;
    for (const void* const pAddress : aAll)
        nOfProgram += baseOf(pAddress) == pProgram ? 1 : 0;
    constexpr int nAlways = 3; // this function, the operator that calls it, and what starts the program
    if (nOfProgram > nAlways && std::none_of(aAll.begin(), aAll.end(), isOfHeaderLibrary)) {
        ++nOurs;
        print(aAll);
    }
    bCounting = false;
}

} // namespace

[[gnu::noinline]] void* operator new(std::size_t nBytes) {
    count();
    void* const pMemory = std::malloc(nBytes == 0 ? 1 : nBytes);
    if (pMemory == nullptr)
        throw std::bad_alloc();
    return pMemory;
}
void operator delete(void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}

namespace {

/// One that does, to see that it is noticed. Its size is not known before: nothing is left out.
const std::string sNoticed(std::getenv("PATH") == nullptr ? 100 : 200, 'x'); // NOLINT(concurrency-mt-unsafe)

} // namespace

int main() {
    bStarted = true;
    const int nExpected = sNoticed.empty() ? 0 : 1;
    if (nOurs == nExpected)
        return 0;
    std::fprintf(stderr, "initialisers that allocate: %d instead of %d\n", nOurs, nExpected);
    return 1;
}
