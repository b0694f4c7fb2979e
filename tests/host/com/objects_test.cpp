// The host on objects in C++ and VBScript: what scripts in JScript cannot tell.

#include "host/Application.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/com/DispatchObject.h"
#include "host/com/LateBound.h"
#include "host/com/Lists.h"
#include "host/com/Rows.h"
#include "host/com/ScriptHost.h"

#include "base/com/HResult.h"

#include <cstring>
#include <map>

namespace halvane::test {

namespace {

using com::ComPtr;
using com::Variant;
using host::com::Context;
using host::com::LateBound;

/// An object whose members are told by a table; what throws is an exception.
class TableObject : public DispatchObject {
public:
    using Answer = std::function<Variant(const std::vector<Variant>&)>;
    explicit TableObject(std::map<std::string, Answer> answers) : answers_(std::move(answers)) {}

protected:
    bool hasMember(const std::string& sName) const override { return answers_.contains(sName); }
    Variant get(const std::string& sName, const std::vector<Variant>& aArguments) override {
        return answers_.at(sName)(aArguments);
    }

private:
    std::map<std::string, Answer> answers_;
};

LateBound late(const host::com::ObjectKind& kind, std::map<std::string, TableObject::Answer> answers) {
    return {std::make_shared<Context>(), kind, makeDispatch<TableObject>(std::move(answers))};
}

TEST(HostObjects, PassTheirExceptionsOnWithTextAndNumber) {
    const auto map = late(host::com::kindMap, {{"Name", [](const auto&) -> Variant {
                                                    throw Failure(57, "the disk is \xC3\xBC"
                                                                      "ber");
                                                }}});
    EXPECT_EQ(failureOf([&] { return map.text("Name"); }), "the disk is \xC3\xBC"
                                                           "ber");
    EXPECT_EQ(failureNumberOf([&] { return map.text("Name"); }), 57);
}

TEST(HostObjects, PassArgumentsInTheirOrder) {
    const auto subtypes = late(host::com::kindSubtypes,
                               {{"DefaultValue", [](const auto& aArguments) {
                                     return com::toVariant(toText(com::toValue(aArguments[0].get())) + "/" +
                                                           toText(com::toValue(aArguments[1].get())));
                                 }}});
    EXPECT_EQ(subtypes.text("DefaultValue", {3, std::string("KIND")}), "3/KIND");
}

TEST(HostObjects, AreAskedForNothingThatIsNotDocumented) {
    const auto map = late(host::com::kindMap, {});
    EXPECT_EQ(failureNumberOf([&] { return map.text("Surprise"); }), 51);
}

class RowValues : public testing::Test {
protected:
    /// The text of a value as a row has it.
    static Value valueOf(const VARIANT& held) {
        const Variant owned = Variant::attach(held);
        const auto pContext = std::make_shared<Context>();
        const auto field = [] {
            return makeDispatch<TableObject>(std::map<std::string, TableObject::Answer>{
                {"Name", [](const auto&) { return com::toVariant(std::string("A")); }},
                {"FieldType", [](const auto&) { return com::toVariant(4); }}});
        };
        const auto table =
            late(host::com::kindTable, {{"Fields", [&](const auto&) {
                                             std::vector<Variant> aFields;
                                             aFields.push_back(variantOf(field()));
                                             return listVariant(ListShape::Array, std::move(aFields));
                                         }}});
        const host::com::ComRow row(
            pContext,
            makeDispatch<TableObject>(std::map<std::string, TableObject::Answer>{
                {"Value", [&](const auto&) { return Variant::copyOf(owned.get()); }}}),
            std::make_shared<host::com::ComFields>(table));
        return toValue(row.value(0));
    }

    static VARIANT variant(VARTYPE type) {
        VARIANT held;
        VariantInit(&held);
        V_VT(&held) = type;
        return held;
    }
};

TEST_F(RowValues, MayBeBytes) {
    SAFEARRAY* pArray = SafeArrayCreateVector(VT_UI1, 0, 3);
    void* pData = nullptr;
    ASSERT_EQ(SafeArrayAccessData(pArray, &pData), S_OK);
    std::memcpy(pData, "abc", 3);
    SafeArrayUnaccessData(pArray);
    VARIANT held = variant(VT_ARRAY | VT_UI1);
    V_ARRAY(&held) = pArray;
    EXPECT_EQ(toText(valueOf(held)), "YWJj");
}

TEST_F(RowValues, MayBeDates) {
    VARIANT held = variant(VT_DATE);
    V_DATE(&held) = 45358.75;
    EXPECT_EQ(valueOf(held), Value(Date{2024, 3, 7, 18, 0, 0}));
    EXPECT_EQ(toText(valueOf(held)), "03/07/2024");
}

TEST_F(RowValues, AreMissingWhereNothingIsThere) {
    EXPECT_EQ(valueOf(variant(VT_EMPTY)), Value(Null{}));
    EXPECT_EQ(valueOf(variant(VT_NULL)), Value(Null{}));
    VARIANT nothing = variant(VT_DISPATCH);
    V_DISPATCH(&nothing) = nullptr;
    EXPECT_EQ(valueOf(nothing), Value(Null{}));
}

TEST_F(RowValues, KeepTheirPrecision) {
    VARIANT held = variant(VT_R4);
    V_R4(&held) = 0.1F;
    EXPECT_EQ(toText(valueOf(held)), "0.1");
    held = variant(VT_CY);
    V_CY(&held).int64 = 123456;
    EXPECT_EQ(toText(valueOf(held)), "12.3456");
    held = variant(VT_I8);
    V_I8(&held) = 9007199254740993;
    EXPECT_EQ(toText(valueOf(held)), "9007199254740993");
}

class Lists : public testing::TestWithParam<ListShape> {
protected:
    static std::string textOf(const VARIANT& list) {
        std::string sText;
        for (const Variant& item : host::com::allItemsOf(std::make_shared<Context>(), list))
            sText += toText(com::toValue(item.get())) + ";";
        return sText;
    }
};

TEST_P(Lists, AreReadFromTheFirstToTheLast) {
    std::vector<Variant> aItems;
    aItems.push_back(com::toVariant(5));
    aItems.push_back(com::toVariant(std::string("six")));
    aItems.push_back(com::toVariant(Null{}));
    EXPECT_EQ(textOf(listVariant(GetParam(), std::move(aItems)).get()), "5;six;;");
    EXPECT_EQ(textOf(listVariant(GetParam(), {}).get()), "");
}

INSTANTIATE_TEST_SUITE_P(AllShapes, Lists,
                         testing::Values(ListShape::Array, ListShape::Enumerated, ListShape::Counted));

TEST_F(Lists, MayBeNothing) {
    EXPECT_EQ(textOf(com::toVariant(Null{}).get()), "");
    EXPECT_EQ(textOf(com::toVariant(Empty{}).get()), "");
    EXPECT_EQ(textOf(com::toVariant(ObjectPtr()).get()), "");
}

TEST_F(Lists, MayBeArraysOfOneType) {
    SAFEARRAY* pArray = SafeArrayCreateVector(VT_R8, 5, 2);
    double dNumber = 1.5;
    LONG lIndex = 5;
    ASSERT_EQ(SafeArrayPutElement(pArray, &lIndex, &dNumber), S_OK);
    dNumber = -2;
    lIndex = 6;
    ASSERT_EQ(SafeArrayPutElement(pArray, &lIndex, &dNumber), S_OK);
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = VT_ARRAY | VT_R8;
    V_ARRAY(&held) = pArray;
    EXPECT_EQ(textOf(Variant::attach(held).get()), "1.5;-2;");
}

TEST_F(Lists, AreEmptyForAnArrayWithoutASize) {
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&held) = nullptr;
    EXPECT_EQ(textOf(held), "");
}

TEST_F(Lists, AreCountedFirstWhereAScriptTellsThem) {
    const Apartment apartment;
    ScriptEngine engine("JScript", "var list = { Count: 2, Item: function (index) { return 10 + index; } };");
    EXPECT_EQ(textOf(variantOf(engine.evaluate("list")).get()), "10;11;");
    engine.run("var holes = [1, , 'three']; holes.extra = 7;");
    EXPECT_EQ(textOf(variantOf(engine.evaluate("holes")).get()), "1;;three;");
}

TEST_F(Lists, AreEnumeratedBeforeTheyAreCounted) {
    class Both final : public DispatchObject {
    protected:
        bool hasMember(const std::string& sName) const override {
            return sName == "Count" || sName == "Item";
        }
        Variant get(const std::string& /*sName*/, const std::vector<Variant>& /*aArguments*/) override {
            throw Failure(5, "Item counts from 1 here");
        }
        ComPtr<IUnknown> enumerator() override {
            const Variant list = [] {
                std::vector<Variant> aItems;
                aItems.push_back(com::toVariant(4));
                return listVariant(ListShape::Enumerated, std::move(aItems));
            }();
            Variant result;
            DISPPARAMS none{};
            com::require(V_DISPATCH(&list.get())
                             ->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                      &none, result.put(), nullptr, nullptr),
                         "Invoke");
            return ComPtr<IUnknown>(V_UNKNOWN(&result.get()));
        }
    };
    EXPECT_EQ(textOf(variantOf(makeDispatch<Both>()).get()), "4;");
}

TEST_F(Lists, AreNoListWithoutACount) {
    EXPECT_EQ(
        failureOf([] {
            return textOf(
                variantOf(makeDispatch<TableObject>(std::map<std::string, TableObject::Answer>{})).get());
        }),
        "The host application's List has no member \"Count\"");
}

TEST(VbScriptHost, IsReadThroughItsClasses) {
    const Apartment apartment;
    ScriptEngine engine("VBScript", R"(
Class Town
  Public Property Get Name
    Name = "Town"
  End Property
  Public Property Get Layers
    Set Layers = Nothing
  End Property
  Public Property Get StandaloneTables
    StandaloneTables = Array(New Signs, Nothing)
  End Property
End Class
Class TextField
  Public Name
  Public Property Get FieldType
    FieldType = 4
  End Property
End Class
Class Sign
  Public Text
  Public Property Get ObjectId
    ObjectId = 5
  End Property
  Public Property Get Value(index)
    Value = Text & index
  End Property
End Class
Class Signs
  Public DatasetName
  Private Sub Class_Initialize
    DatasetName = "Signs"
  End Sub
  Public Property Get Fields
    Dim one
    Set one = New TextField
    one.Name = "TEXT"
    Fields = Array(one)
  End Property
  Public Function Search(clause)
    Dim one
    If clause <> "" Then Err.Raise 5, "Signs", "no clause is understood: " & clause
    Set one = New Sign
    one.Text = "Stop"
    Search = Array(one)
  End Function
End Class
Class Application
  Public Property Get Today
    Today = DateSerial(2024, 3, 7)
  End Property
End Class
Class Document
  Public Property Get FocusMap
    Set FocusMap = New Town
  End Property
  Public Property Get Application
    Set Application = New Application
  End Property
End Class
)");
    const auto pDocument = engine.evaluate("New Document");
    const auto pMap = host::com::mapDocumentOf(*pDocument)->focusMap();
    EXPECT_EQ(pMap->name(), "Town");
    EXPECT_EQ(pMap->layerCount(), 0);
    ASSERT_EQ(pMap->standaloneTableCount(), 2);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "Signs");
    EXPECT_EQ(pMap->standaloneTable(1), nullptr);
    const auto pSigns = pMap->standaloneTable(0);
    const auto pRow = pSigns->search(nullptr)->nextRow();
    EXPECT_EQ(pRow->objectId(), 5);
    EXPECT_EQ(toText(pRow->value(0)), "Stop0");
    EXPECT_EQ(pRow->shape(), nullptr);
    const host::GisQueryFilter filter{"X = 1"};
    EXPECT_NE(failureOf([&] { return pSigns->search(&filter); }), "");
    EXPECT_EQ(failureOf([&] { return pMap->spatialReference(); }),
              "The host application's Map has no member \"SpatialReference\"");
    EXPECT_EQ(host::com::makeHost(pDocument.get())->today(), (Date{2024, 3, 7}));
}

} // namespace

} // namespace halvane::test
