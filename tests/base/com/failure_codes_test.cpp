#include "base/com/HResult.h"

#include "base/com/Bstr.h"

#include <gtest/gtest.h>

namespace halvane::test {

namespace {

TEST(FailureCodes, HaveTheRuntimesNumbers) {
    EXPECT_EQ(com::failureOf(DISP_E_TYPEMISMATCH, "x").number(), 13);
    EXPECT_EQ(com::failureOf(DISP_E_MEMBERNOTFOUND, "x").number(), 438);
    EXPECT_EQ(com::failureOf(E_OUTOFMEMORY, "x").number(), 7);
    EXPECT_EQ(com::failureOf(static_cast<HRESULT>(0x800A01C9), "x").number(), 457);
    EXPECT_EQ(com::failureOf(E_ACCESSDENIED, "x").number(), static_cast<std::int32_t>(E_ACCESSDENIED));
}

TEST(FailureCodes, BeginWithWhatWasTried) {
    EXPECT_EQ(com::failureOf(DISP_E_TYPEMISMATCH, "Map.Name").description(), "Map.Name: Type mismatch");
    const std::string sUnknown = com::failureOf(static_cast<HRESULT>(0x8123FFFF), "Map.Name").description();
    EXPECT_EQ(sUnknown, "Map.Name: 0x8123FFFF");
}

TEST(FailureCodes, GiveWayToTheTextOfAnException) {
    EXCEPINFO exception{};
    exception.scode = static_cast<SCODE>(0x800A0039);
    exception.bstrDescription = com::Bstr(std::string_view("the disk is full")).detach();
    const Failure failure = com::failureOf(exception, "Map.Name");
    EXPECT_EQ(failure.number(), 57);
    EXPECT_EQ(failure.description(), "the disk is full");
    EXPECT_EQ(exception.bstrDescription, nullptr) << "its texts were taken";
}

TEST(FailureCodes, AreTheHostsWhereAnExceptionHasNone) {
    EXCEPINFO exception{};
    const Failure failure = com::failureOf(exception, "Map.Name");
    EXPECT_EQ(failure.number(), 1004);
    EXPECT_EQ(failure.description(), "Map.Name failed");
    exception.wCode = 9;
    EXPECT_EQ(com::failureOf(exception, "Map.Name").number(), 9);
}

TEST(FailureCodes, GoBackToAutomation) {
    EXPECT_EQ(com::resultOf(Failure::of(FailureNumber::TypeMismatch)), static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(com::resultOf(Failure(E_ACCESSDENIED, "no")), E_ACCESSDENIED);
    EXPECT_EQ(com::failureOf(com::resultOf(Failure(1005, "no")), "x").number(), 1005);
}

} // namespace

} // namespace halvane::test
