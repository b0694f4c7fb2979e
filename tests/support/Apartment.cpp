#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

namespace halvane::test {
namespace {

/// The apartment that a program has which uses components. Without one, every document would enter and leave
/// its own, which takes three times as long.
class Apartment : public testing::Environment {
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    void TearDown() override { ::CoUninitialize(); }
};

const auto* const pApartment = testing::AddGlobalTestEnvironment(new Apartment); // the framework owns it

} // namespace
} // namespace halvane::test
