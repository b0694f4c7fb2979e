// Callers of every kind of apartment, and of none.

#include "XmlSupport.h"

#include <objbase.h>
#include <optional>
#include <thread>

namespace halvane::test {
namespace {

/// What one document's parse and selection yield on a thread of its own.
std::string selectedOnThread(std::optional<DWORD> apartment) {
    std::string sSelected;
    std::thread thread([&] {
        const bool bEntered = apartment && SUCCEEDED(::CoInitializeEx(nullptr, *apartment));
        EXPECT_EQ(bEntered, apartment.has_value());
        {
            const auto oDocument = documentOf("<r><a>x</a><b/></r>");
            sSelected = oDocument->asNode().selectSingleNode("//a").text();
            oDocument->documentElement().appendChild(element(*oDocument, "c"));
            sSelected += oDocument->asNode().selectSingleNode("//c").nodeName();
        }
        if (bEntered)
            ::CoUninitialize();
    });
    thread.join();
    return sSelected;
}

TEST(Apartments, OfOneThreadAreServed) {
    EXPECT_EQ(selectedOnThread(COINIT_APARTMENTTHREADED), "xc");
}

TEST(Apartments, OfManyThreadsAreServed) {
    EXPECT_EQ(selectedOnThread(COINIT_MULTITHREADED), "xc");
}

TEST(Apartments, AreNotNeededAndNotLeftBehind) {
    EXPECT_EQ(selectedOnThread(std::nullopt), "xc");
    HRESULT hr = E_FAIL;
    std::thread([&] {
        documentOf("<r/>");
        hr =
            ::CoInitializeEx(nullptr, COINIT_MULTITHREADED); // S_FALSE or a change where there is one already
        ::CoUninitialize();
    }).join();
    EXPECT_EQ(hr, S_OK);
}

} // namespace
} // namespace halvane::test
