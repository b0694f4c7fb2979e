#include "base/com/Apartment.h"
#include "base/com/Windows.h"

#include <gtest/gtest.h>

namespace halvane {
namespace {

// A thread of its own has no apartment yet.
void onAnotherThread(DWORD(WINAPI* fnRun)(void*)) {
    const HANDLE hThread = CreateThread(nullptr, 0, fnRun, nullptr, 0, nullptr);
    ASSERT_NE(hThread, nullptr);
    WaitForSingleObject(hThread, INFINITE);
    CloseHandle(hThread);
}

bool hasApartment() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier));
}

TEST(AnApartment, LastsAsLongAsItIsEntered) {
    onAnotherThread([](void*) -> DWORD {
        for (const auto use : {com::Apartment::For::Components, com::Apartment::For::Dialogs}) {
            {
                const com::Apartment apartment(use);
                EXPECT_TRUE(apartment.entered());
                EXPECT_TRUE(hasApartment());
            }
            EXPECT_FALSE(hasApartment());
        }
        return 0;
    });
}

TEST(AnApartment, OfManyThreadsStaysWhatItIs) {
    onAnotherThread([](void*) -> DWORD {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        {
            const com::Apartment apartment(com::Apartment::For::Dialogs);
            EXPECT_FALSE(apartment.entered());
        }
        EXPECT_TRUE(hasApartment());
        CoUninitialize();
        return 0;
    });
}

} // namespace
} // namespace halvane
