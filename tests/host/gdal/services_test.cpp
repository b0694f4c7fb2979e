#include "SampleData.h"

#include "base/Failure.h"
#include "host/Layers.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <ctime>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

const auto pHost = [] { return host::gdal::GdalHost::create(); };

TEST(PropertySet, FindsItsPropertiesIgnoringCase) {
    const auto pSet = pHost()->newPropertySet();
    pSet->setProperty("DATABASE", std::string("x"));
    pSet->setProperty("Database", std::string("y"));
    EXPECT_EQ(toText(pSet->property("database")), "y");
    EXPECT_TRUE(isEmpty(pSet->property("SERVER")));
}

TEST(NumericFormat, ThatWasNotConfiguredIsAnInvalidCall) {
    try {
        static_cast<void>(pHost()->newNumericFormat()->valueToText(1));
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), 5);
    }
}

TEST(Today, IsTheLocalDate) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const Date date = pHost()->today();
    EXPECT_EQ(date.year, local.tm_year + 1900);
    EXPECT_EQ(date.month, local.tm_mon + 1);
    EXPECT_EQ(date.day, local.tm_mday);
}

TEST(PathSeparator, IsASlash) {
    EXPECT_EQ(pHost()->pathSeparator(), '/');
}

class Probe : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "Probe"; }
};

TEST(Components, AreCreatedByTheirIdentifierIgnoringCase) {
    const auto pOwner = pHost();
    pOwner->registerComponent("City.Probe", [] { return std::make_shared<Probe>(); });
    const ObjectPtr pFirst = pOwner->createComponent("CITY.PROBE");
    ASSERT_NE(pFirst, nullptr);
    EXPECT_EQ(pFirst->typeName(), "Probe");
    EXPECT_NE(pOwner->createComponent("City.Probe"), pFirst);
}

TEST(Components, ThatNobodyRegisteredCannotBeCreated) {
    const auto pOwner = pHost();
    pOwner->registerComponent("City.Nothing", [] { return nullptr; });
    for (const char* pProgId : {"City.Unknown", "City.Nothing"}) {
        try {
            static_cast<void>(pOwner->createComponent(pProgId));
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), 429);
            EXPECT_THAT(failure.description(), HasSubstr(pProgId));
        }
    }
}

TEST(NewFeatureLayer, HasNoFeatureClassUntilItIsGivenOne) {
    const TemporaryFolder folder;
    const auto pLayer = pHost()->newFeatureLayer();
    EXPECT_EQ(pLayer->featureClass(), nullptr);
    EXPECT_EQ(pLayer->name(), "");
    EXPECT_EQ(pLayer->selectionCount(), 0);
    const auto pRoads = openWorkspace(makeCity(folder))->openFeatureClass("roads");
    pLayer->setFeatureClass(pRoads);
    EXPECT_EQ(pLayer->featureClass(), pRoads);
    EXPECT_EQ(pLayer->name(), "roads");
    EXPECT_EQ(pLayer->asTable(), pRoads);
}

} // namespace
} // namespace halvane::tests
