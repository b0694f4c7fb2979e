#include "CollectionSupport.h"

#include "collection/dCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halvane::test {

namespace {

using testing::ElementsAre;

class NamedObject : public Object {
public:
    explicit NamedObject(std::string sTypeName) : sTypeName_(std::move(sTypeName)) {}
    [[nodiscard]] std::string_view typeName() const override { return sTypeName_; }

private:
    std::string sTypeName_;
};

ObjectPtr someObject() {
    return std::make_shared<NamedObject>("GisLayer");
}

std::vector<std::string> valueTexts(const dCollection& dValues) {
    std::vector<std::string> aTexts;
    for (const Value& vValue : dValues)
        aTexts.push_back(toText(vValue));
    return aTexts;
}

} // namespace

TEST(DCollectionSetValue, TakesAKeyOutOfItsOwnKeyList) {
    dCollection dValues;
    dValues.Add(std::int32_t{1}, "a");
    dValues.Add(std::int32_t{2}, "b");
    EXPECT_TRUE(dValues.SetValue(std::int32_t{9}, dValues.ReturnKeys()[0]));
    EXPECT_EQ(dValues.GetValueString("a"), "9");
    EXPECT_EQ(dValues.Count(), 2);
}

TEST(DCollection, IsEmptyWhenMade) {
    const auto dValues = dCollection::create();
    EXPECT_EQ(dValues->Count(), 0);
    EXPECT_TRUE(dValues->ReturnKeys().empty());
    EXPECT_EQ(dValues->ReturnValues().count(), 0);
    EXPECT_EQ(dValues->typeName(), "dCollection");
}

TEST(DCollectionAdd, FilesTheValueUnderItsKey) {
    dCollection dValues;
    EXPECT_TRUE(dValues.Add(text("ROADS"), "LayerName"));
    EXPECT_EQ(dValues.Count(), 1);
    EXPECT_EQ(dValues.GetValue("LayerName"), text("ROADS"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("LayerName"));
}

TEST(DCollectionAdd, KeepsTheOrderOfValuesAndKeys) {
    dCollection dValues;
    dValues.Add(text("1"), "b");
    dValues.Add(text("2"), "");
    dValues.Add(text("3"), "A");
    EXPECT_THAT(valueTexts(dValues), ElementsAre("1", "2", "3"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("b", "", "A"));
}

TEST(DCollectionAdd, AddsAnyNumberOfValuesWithoutAKey) {
    dCollection dValues;
    EXPECT_TRUE(dValues.Add(text("1"), ""));
    EXPECT_TRUE(dValues.Add(text("2"), ""));
    EXPECT_EQ(dValues.Count(), 2);
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("", ""));
    EXPECT_EQ(dValues.FindIndexOfKey(""), 1);
}

TEST(DCollectionAdd, RefusesAKeyThatIsFiledInAnotherCaseAndAddsNothing) {
    dCollection dValues;
    EXPECT_TRUE(dValues.Add(text("first"), "Name"));
    EXPECT_FALSE(dValues.Add(text("second"), "NAME"));
    EXPECT_EQ(dValues.Count(), 1);
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("Name"));
    EXPECT_EQ(dValues.GetValueString("name"), "first");
}

TEST(DCollectionAdd, MatchesKeysOfAllScriptsIgnoringCase) {
    dCollection dValues;
    EXPECT_TRUE(dValues.Add(text("1"), "Größe"));
    EXPECT_FALSE(dValues.Add(text("2"), "GRÖßE"));
    EXPECT_EQ(dValues.GetValueString("grÖße"), "1");
}

TEST(DCollectionSetValue, AddsUnderAnAbsentKey) {
    dCollection dValues;
    EXPECT_TRUE(dValues.SetValue(text("1"), "a"));
    EXPECT_EQ(dValues.GetValueString("a"), "1");
}

TEST(DCollectionSetValue, MovesTheEntryToTheEndOfValuesAndKeys) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "b");
    EXPECT_TRUE(dValues.SetValue(text("3"), "a"));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("2", "3"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("b", "a"));
}

TEST(DCollectionSetValue, ReplacesAKeyWrittenInAnotherCaseAndKeepsKeysInStep) {
    dCollection dValues;
    dValues.Add(text("1"), "Name");
    dValues.Add(text("2"), "b");
    EXPECT_TRUE(dValues.SetValue(text("3"), "NAME"));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("2", "3"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("b", "NAME"));
}

TEST(DCollectionSetValue, AddsAnotherValueForTheEmptyKey) {
    dCollection dValues;
    dValues.Add(text("1"), "");
    EXPECT_TRUE(dValues.SetValue(text("2"), ""));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("1", "2"));
}

TEST(DCollectionRemoveAll, EmptiesValuesAndKeys) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "");
    dValues.removeAll();
    EXPECT_EQ(dValues.Count(), 0);
    EXPECT_TRUE(dValues.ReturnKeys().empty());
    EXPECT_TRUE(dValues.Add(text("3"), "a"));
}

TEST(DCollectionRemoveAll, ReleasesTheObjects) {
    dCollection dValues;
    const ObjectPtr pObject = someObject();
    dValues.Add(pObject, "o");
    dValues.removeAll();
    EXPECT_EQ(pObject.use_count(), 1);
}

TEST(DCollectionGetValue, ReturnsAnObjectAsAReferenceToIt) {
    dCollection dValues;
    const ObjectPtr pObject = someObject();
    const ObjectPtr pUnknown = std::make_shared<NamedObject>("Unknown");
    dValues.Add(pObject, "o");
    dValues.Add(pUnknown, "u");
    EXPECT_EQ(std::get<ObjectPtr>(dValues.GetValue("O")), pObject);
    EXPECT_EQ(std::get<ObjectPtr>(dValues.GetValue("u")), pUnknown);
}

TEST(DCollectionGetValue, ReturnsAnyOtherValueAsACopyOfItsType) {
    dCollection dValues;
    dValues.Add(2.5, "d");
    dValues.Add(true, "b");
    EXPECT_EQ(dValues.GetValue("d"), Value(2.5));
    EXPECT_EQ(dValues.GetValue("b"), Value(true));
}

TEST(DCollectionGetValue, IsEmptyForAnAbsentKeyAndForNoKey) {
    dCollection dValues;
    dValues.Add(text("1"), "");
    EXPECT_TRUE(isEmpty(dValues.GetValue("a")));
    EXPECT_TRUE(isEmpty(dValues.GetValue("")));
}

TEST(DCollectionItem, FindsAnObjectByPositionAndByKey) {
    dCollection dValues;
    const ObjectPtr pObject = someObject();
    dValues.Add(text("1"), "a");
    dValues.Add(pObject, "o");
    EXPECT_EQ(dValues.Item(2), pObject);
    EXPECT_EQ(dValues.Item(text("O")), pObject);
}

TEST(DCollectionItem, IsNothingOnFailure) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    EXPECT_EQ(dValues.Item(1), nullptr);
    EXPECT_EQ(dValues.Item(0), nullptr);
    EXPECT_EQ(dValues.Item(2), nullptr);
    EXPECT_EQ(dValues.Item(text("b")), nullptr);
}

TEST(DCollectionItem2, FindsAnyValueByPositionAndByKey) {
    dCollection dValues;
    const ObjectPtr pObject = someObject();
    dValues.Add(text("1"), "a");
    dValues.Add(17, "b");
    dValues.Add(pObject, "o");
    EXPECT_EQ(dValues.Item2(1), text("1"));
    EXPECT_EQ(dValues.Item2(2.0), Value(17));
    EXPECT_EQ(dValues.Item2(text("B")), Value(17));
    EXPECT_EQ(dValues.Item2(3), Value(pObject));
}

TEST(DCollectionItem2, TakesATextOfDigitsAsAKey) {
    dCollection dValues;
    dValues.Add(text("first"), "2");
    dValues.Add(text("second"), "1");
    EXPECT_EQ(dValues.Item2(text("1")), text("second"));
    EXPECT_EQ(dValues.Item2(1), text("first"));
}

TEST(DCollectionItem2, IsEmptyOnFailure) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    EXPECT_TRUE(isEmpty(dValues.Item2(0)));
    EXPECT_TRUE(isEmpty(dValues.Item2(2)));
    EXPECT_TRUE(isEmpty(dValues.Item2(-1)));
    EXPECT_TRUE(isEmpty(dValues.Item2(text("b"))));
    EXPECT_TRUE(isEmpty(dValues.Item2(Null())));
    EXPECT_TRUE(isEmpty(dValues.Item2(1e10)));
}

TEST(DCollectionRemoveByKey, RemovesTheValueAndItsKey) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "b");
    dValues.Add(text("3"), "c");
    EXPECT_TRUE(dValues.RemoveByKey("b"));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("1", "3"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("a", "c"));
}

TEST(DCollectionRemoveByKey, FindsTheKeyInAnyCaseAndKeepsKeysInStep) {
    dCollection dValues;
    dValues.Add(text("1"), "Name");
    dValues.Add(text("2"), "b");
    EXPECT_TRUE(dValues.RemoveByKey("NAME"));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("2"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("b"));
}

TEST(DCollectionRemoveByKey, IsFalseForAnAbsentKeyAndForNoKey) {
    dCollection dValues;
    dValues.Add(text("1"), "");
    EXPECT_FALSE(dValues.RemoveByKey("a"));
    EXPECT_FALSE(dValues.RemoveByKey(""));
    EXPECT_EQ(dValues.Count(), 1);
}

TEST(DCollectionRemoveByIndex, RemovesThePositionFromValuesAndKeys) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "");
    dValues.Add(text("3"), "c");
    EXPECT_TRUE(dValues.RemoveByIndex(2));
    EXPECT_THAT(valueTexts(dValues), ElementsAre("1", "3"));
    EXPECT_THAT(dValues.ReturnKeys(), ElementsAre("a", "c"));
    EXPECT_TRUE(dValues.RemoveByIndex(1));
    EXPECT_EQ(dValues.GetValueString("c"), "3");
}

TEST(DCollectionRemoveByIndex, IsFalseForABadPosition) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    EXPECT_FALSE(dValues.RemoveByIndex(0));
    EXPECT_FALSE(dValues.RemoveByIndex(2));
    EXPECT_FALSE(dValues.RemoveByIndex(-1));
    EXPECT_EQ(dValues.Count(), 1);
}

TEST(DCollectionNewEnum, WalksTheValuesInOrder) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "b");
    ValueEnumerator values = dValues.NewEnum();
    EXPECT_EQ(*values.next(), text("1"));
    EXPECT_EQ(*values.next(), text("2"));
    EXPECT_EQ(values.next(), nullptr);
}

TEST(DCollectionReturnKeys, IsTheKeyListItself) {
    dCollection dValues;
    const auto& aKeys = dValues.ReturnKeys();
    dValues.Add(text("1"), "a");
    EXPECT_THAT(aKeys, ElementsAre("a"));
    dValues.RemoveByKey("a");
    EXPECT_TRUE(aKeys.empty());
}

TEST(DCollectionReturnValues, AreTheValuesThemselves) {
    dCollection dValues;
    const ValueCollection& values = dValues.ReturnValues();
    dValues.Add(text("1"), "a");
    EXPECT_EQ(values.count(), 1);
    EXPECT_EQ(values.item("A"), text("1"));
}

TEST(DCollectionGetValueString, ConvertsTheValueToText) {
    dCollection dValues;
    dValues.Add(1.5, "d");
    dValues.Add(true, "b");
    dValues.Add(Date{2024, 3, 7}, "t");
    EXPECT_EQ(dValues.GetValueString("D"), "1.5");
    EXPECT_EQ(dValues.GetValueString("b"), "True");
    EXPECT_EQ(dValues.GetValueString("t"), "03/07/2024");
}

TEST(DCollectionGetValueString, IsEmptyForAnAbsentKeyAndForAnObject) {
    dCollection dValues;
    dValues.Add(someObject(), "o");
    EXPECT_EQ(dValues.GetValueString("x"), "");
    EXPECT_EQ(dValues.GetValueString("o"), "");
}

TEST(DCollectionBValueExist, ComparesTextsExactlyWhenCaseCounts) {
    dCollection dValues;
    dValues.Add(text("Roads"), "a");
    dValues.Add(17, "b");
    EXPECT_TRUE(dValues.bValueExist("Roads", true));
    EXPECT_FALSE(dValues.bValueExist("ROADS", true));
    EXPECT_TRUE(dValues.bValueExist("17", true));
    EXPECT_FALSE(dValues.bValueExist("1", true));
}

TEST(DCollectionBValueExist, UpperCasesBothSidesOtherwise) {
    dCollection dValues;
    dValues.Add(text("Größe"), "a");
    EXPECT_TRUE(dValues.bValueExist("GRÖßE", false));
    EXPECT_TRUE(dValues.bValueExist("größe", false));
    EXPECT_FALSE(dValues.bValueExist("Breite", false));
}

TEST(DCollectionBValueExist, EndsWithFalseAtAnObject) {
    dCollection dValues;
    dValues.Add(text("before"), "");
    dValues.Add(someObject(), "");
    dValues.Add(text("behind"), "");
    EXPECT_TRUE(dValues.bValueExist("before", true));
    EXPECT_FALSE(dValues.bValueExist("behind", true));
}

TEST(DCollectionFindIndexOfKey, FindsTheFirstExactlyEqualKey) {
    dCollection dValues;
    dValues.Add(text("1"), "a");
    dValues.Add(text("2"), "");
    dValues.Add(text("3"), "Name");
    EXPECT_EQ(dValues.FindIndexOfKey("Name"), 3);
    EXPECT_EQ(dValues.FindIndexOfKey(""), 2);
    EXPECT_EQ(dValues.FindIndexOfKey("NAME"), -1);
    EXPECT_EQ(dValues.FindIndexOfKey("b"), -1);
}

TEST(DCollectionFindValueKey, FindsTheSameObject) {
    dCollection dValues;
    const ObjectPtr pObject = someObject();
    dValues.Add(text("1"), "a");
    dValues.Add(someObject(), "other");
    dValues.Add(pObject, "this");
    EXPECT_EQ(dValues.FindValueKey(pObject), "this");
    EXPECT_EQ(dValues.FindValueKey(someObject()), "");
}

TEST(DCollectionFindValueKey, FindsTheFirstValueOfTheSameText) {
    dCollection dValues;
    dValues.Add(text("Roads"), "a");
    dValues.Add(17, "b");
    dValues.Add(text("17"), "c");
    EXPECT_EQ(dValues.FindValueKey(text("17")), "b");
    EXPECT_EQ(dValues.FindValueKey(17.0), "b");
    EXPECT_EQ(dValues.FindValueKey(text("ROADS")), "");
}

TEST(DCollectionFindValueKey, EndsWithNothingAtAnObjectWhenATextIsSought) {
    dCollection dValues;
    dValues.Add(someObject(), "o");
    dValues.Add(text("1"), "a");
    EXPECT_EQ(dValues.FindValueKey(text("1")), "");
}

TEST(DCollectionFindValueKey, IsEmptyForAValueWithoutAKey) {
    dCollection dValues;
    dValues.Add(text("1"), "");
    EXPECT_EQ(dValues.FindValueKey(text("1")), "");
}

} // namespace halvane::test
