// What a message says of a value that did not fit.

#include "exporters/RowValue.h"

#include "host/memory/Memory.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace host::memory;
using host::FieldType;

class RowValueTest : public testing::Test {
protected:
    RowValueTest() { pSigns->addRow({std::int64_t{7}, std::string("Stop")}); }

    std::string contextOf(const ValueView& value) const {
        return valueContext(*pSigns->search(nullptr)->nextRow(), 1, value, "a number");
    }

    MemoryHostPtr pHost = MemoryHost::make();
    MemoryTablePtr pSigns =
        MemoryTable::make("SIGNS", {field("OID", FieldType::Oid), field("KIND", FieldType::String)});
};

TEST_F(RowValueTest, NamesTheFieldTheRowAndWhatItHolds) {
    const std::string sStart = "the field \"KIND\" of row 7 holds ";
    const Value vShape = ObjectPtr(MemoryGeometry::polyline({{{0, 0}, {1, 0}}}));
    EXPECT_EQ(contextOf(std::string_view("Stop")), sStart + "the text \"Stop\", not a number");
    EXPECT_EQ(contextOf(std::string_view()), sStart + "the text \"\", not a number");
    EXPECT_EQ(contextOf(toView(vShape)), sStart + "a shape, not a number");
    EXPECT_EQ(contextOf(ObjectPtr(pSigns)), sStart + "an object, not a number");
    EXPECT_EQ(contextOf(Null()), sStart + "no value, not a number");
    EXPECT_EQ(contextOf(true), sStart + "a value, not a number");
}

TEST_F(RowValueTest, DoesNotRepeatALongText) {
    const std::string sLongest(100, 'x');
    EXPECT_EQ(contextOf(sLongest),
              "the field \"KIND\" of row 7 holds the text \"" + sLongest + "\", not a number");
    EXPECT_EQ(contextOf(sLongest + "x"), "the field \"KIND\" of row 7 holds a long text, not a number");
}

TEST_F(RowValueTest, SaysNothingWhereTheHostDoesNotTell) {
    const auto pRow = pSigns->search(nullptr)->nextRow();
    pHost->faults().failAlways("objectId");
    EXPECT_EQ(valueContext(*pRow, 1, std::string_view("Stop"), "a number"), "");
}

TEST_F(RowValueTest, IsToldWithTheFailureOfAValueThatIsNoNumber) {
    const auto pRow = pSigns->search(nullptr)->nextRow();
    EXPECT_EQ(rowNumber(*pRow, 1, std::string_view("12.5")), 12.5);
    try {
        static_cast<void>(rowNumber(*pRow, 1, std::string_view("Stop")));
        ADD_FAILURE() << "a text was read as a number";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), static_cast<std::int32_t>(FailureNumber::TypeMismatch));
        EXPECT_EQ(failure.context(), "the field \"KIND\" of row 7 holds the text \"Stop\", not a number");
    }
}

} // namespace
} // namespace halvane::test
