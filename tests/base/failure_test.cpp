#include "base/Failure.h"

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <stdexcept>

namespace halvane {

namespace {

template<class Exception>
Failure caughtAs(const Exception& exception) {
    try {
        throw exception;
    } catch (...) {
        return currentFailure();
    }
}

} // namespace

TEST(Failure, CarriesItsNumberAndDescription) {
    const Failure failure(FailureNumber::HostFailure, "no such layer");
    EXPECT_EQ(failure.number(), 1004);
    EXPECT_EQ(failure.description(), "no such layer");
    EXPECT_STREQ(failure.what(), "no such layer");
    EXPECT_EQ(Failure(-2147467259, "the host's own").number(), -2147467259);
}

TEST(Failure, HasATextForEveryNumberOfTheRuntime) {
    EXPECT_EQ(Failure::of(FailureNumber::TypeMismatch).number(), 13);
    EXPECT_EQ(Failure::of(FailureNumber::TypeMismatch).description(), "Type mismatch");
    EXPECT_EQ(Failure::of(FailureNumber::Overflow).description(), "Overflow");
    EXPECT_EQ(Failure::of(FailureNumber::SubscriptOutOfRange).description(), "Subscript out of range");
    EXPECT_EQ(Failure::of(FailureNumber::DuplicateKey).number(), 457);
}

TEST(Failure, HasATextOfItsOwnForEachNumber) {
    std::set<std::string> texts;
    std::size_t nNumbers = 0;
    for (const auto number :
         {FailureNumber::InvalidProcedureCall, FailureNumber::Overflow, FailureNumber::OutOfMemory,
          FailureNumber::SubscriptOutOfRange, FailureNumber::TypeMismatch, FailureNumber::InternalError,
          FailureNumber::FileNotFound, FailureNumber::DeviceIo, FailureNumber::PathFileAccess,
          FailureNumber::ObjectVariableNotSet, FailureNumber::ObjectRequired,
          FailureNumber::CannotCreateComponent, FailureNumber::PropertyOrMethodNotSupported,
          FailureNumber::ActionNotSupported, FailureNumber::DuplicateKey, FailureNumber::HostFailure,
          FailureNumber::DocumentFailure}) {
        texts.insert(Failure::of(number).description());
        ++nNumbers;
    }
    EXPECT_EQ(texts.size(), nNumbers);
    EXPECT_EQ(texts.count(""), 0U);
}

TEST(Failure, OfANumberThatTheRuntimeDoesNotKnowIsTheApplications) {
    const Failure failure = Failure::of(static_cast<FailureNumber>(2));
    EXPECT_EQ(failure.number(), 2);
    EXPECT_EQ(failure.description(), "Application-defined or object-defined error");
}

TEST(CurrentFailure, IsTheFailureThatIsHandled) {
    const Failure failure = caughtAs(Failure(FailureNumber::FileNotFound, "roads.xml"));
    EXPECT_EQ(failure.number(), 53);
    EXPECT_EQ(failure.description(), "roads.xml");
}

TEST(CurrentFailure, NamesExhaustedMemory) {
    EXPECT_EQ(caughtAs(std::bad_alloc()).number(), 7);
    EXPECT_EQ(caughtAs(std::bad_alloc()).description(), "Out of memory");
}

TEST(CurrentFailure, TakesAnyOtherExceptionAsInternalErrorWithItsText) {
    EXPECT_EQ(caughtAs(std::runtime_error("the reason")).number(), 51);
    EXPECT_EQ(caughtAs(std::runtime_error("the reason")).description(), "the reason");
    EXPECT_EQ(caughtAs(17).number(), 51);
}

TEST(Failure, KeepsTheContextThatWasKnownNearestToTheCause) {
    const Failure failure = Failure::of(FailureNumber::TypeMismatch);
    EXPECT_EQ(failure.context(), "");
    const Failure known = failure.about("the field A");
    EXPECT_EQ(known.context(), "the field A");
    EXPECT_EQ(known.description(), "Type mismatch");
    EXPECT_EQ(known.number(), failure.number());
    EXPECT_EQ(known.about("the row").context(), "the field A");
    try {
        throw known;
    } catch (...) {
        EXPECT_EQ(currentFailure().context(), "the field A");
    }
}

} // namespace halvane
