// What a host makes for an export: layers, workspaces, number formats, components.

#include "host/conformance/Conformance.h"

#include <algorithm>

namespace halvane::test::conformance {

namespace {

using namespace host;

class Application : public HostTest {
protected:
    static GisNumericFormatPtr formatOf(const OpenTown& open, std::int32_t lDecimals) {
        auto pFormat = open.pHost->newNumericFormat();
        pFormat->configure({1, 0, 15, lDecimals, 0, 0, 0});
        return pFormat;
    }
};

constexpr std::array aNumbers{0.0, 2.0, -7.5, 3.14159, 1234567.25, 1e20, -0.0004};

} // namespace

TEST_F(Application, MakesFeatureLayersThatAreGivenTheirClass) {
    inTown([this](const OpenTown& open) {
        const GisFeatureLayerPtr pLayer = open.pHost->newFeatureLayer();
        ASSERT_NE(pLayer, nullptr);
        EXPECT_EQ(pLayer->featureClass(), nullptr);
        EXPECT_EQ(pLayer->selectionCount(), 0);
        pLayer->setFeatureClass(open.workspace()->openFeatureClass("Roads"));
        EXPECT_EQ(pLayer->featureClass()->datasetName(), town().roads.sName);
        EXPECT_EQ(idsOf(*pLayer->featureClass()->search(nullptr)), idsOf(town().roads));
    });
}

TEST_F(Application, KeepsTheProperties) {
    inTown([](const OpenTown& open) {
        const GisPropertySetPtr pProperties = open.pHost->newPropertySet();
        pProperties->setProperty("DATABASE", std::string("here"));
        pProperties->setProperty("DATABASE", std::string("there"));
        EXPECT_EQ(toText(pProperties->property("DATABASE")), "there");
        EXPECT_EQ(toText(pProperties->property("SERVER")), "");
    });
}

TEST_F(Application, OpensWorkspacesByTheirPropertiesAndByTheirPath) {
    inTown([this](const OpenTown& open) {
        const GisPropertySetPtr pProperties = open.pHost->newPropertySet();
        pProperties->setProperty("DATABASE", open.sDatabase);
        for (const WorkspaceFactoryKind kind :
             {WorkspaceFactoryKind::Default, WorkspaceFactoryKind::LocalDatabase}) {
            const auto pFactory = open.pHost->newWorkspaceFactory(kind);
            EXPECT_EQ(pFactory->open(*pProperties, 0)->pathName(), open.sDatabase);
            EXPECT_EQ(pFactory->openFromFile(open.sDatabase, 0)->openTable("Signs")->datasetName(),
                      town().signs.sName);
        }
    });
}

TEST_F(Application, FailsForAWorkspaceThatIsNotThere) {
    inTown([](const OpenTown& open) {
        const std::string sElsewhere = open.sDatabase + "-of-nobody";
        const GisPropertySetPtr pProperties = open.pHost->newPropertySet();
        pProperties->setProperty("DATABASE", sElsewhere);
        const auto pFactory = open.pHost->newWorkspaceFactory(WorkspaceFactoryKind::Default);
        EXPECT_TRUE(failsWithNumberAndText([&] { return pFactory->open(*pProperties, 0); }));
        EXPECT_TRUE(failsWithNumberAndText([&] { return pFactory->openFromFile(sElsewhere, 0); }));
    });
}

TEST_F(Application, KnowsNoCatalogObjectOfAnUnknownName) {
    inTown([](const OpenTown& open) {
        EXPECT_EQ(open.pHost->newCatalog()->objectFromFullName("Nowhere\\nothing.sde"), nullptr);
    });
}

TEST_F(Application, CreatesNoComponentOfAnUnknownName) {
    inTown([](const OpenTown& open) {
        const auto failure =
            failureOf([&] { return open.pHost->createComponent("Town.NobodyRegistersThis"); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->number(), static_cast<std::int32_t>(FailureNumber::CannotCreateComponent));
        EXPECT_NE(failure->description(), "");
    });
}

TEST_F(Application, WritesNumbersWithTheDecimalsOfTheFourthSetting) {
    inTown([](const OpenTown& open) {
        EXPECT_EQ(formatOf(open, 2)->valueToText(3.14159), "3.14");
        EXPECT_EQ(formatOf(open, 2)->valueToText(7), "7");
        EXPECT_EQ(formatOf(open, 0)->valueToText(2.25), "2");
        EXPECT_EQ(formatOf(open, 5)->valueToText(-7.5), "-7.5");
    });
}

TEST_F(Application, AppendsTheNumbersThatItWrites) {
    inTown([](const OpenTown& open) {
        const GisNumericFormatPtr pFormat = formatOf(open, 3);
        for (const double dNumber : aNumbers) {
            std::string sText = "before ";
            pFormat->appendValue(sText, dNumber);
            EXPECT_EQ(sText, "before " + pFormat->valueToText(dNumber));
        }
    });
}

TEST_F(Application, WritesNoMarkupInPlainNumbers) {
    inTown([](const OpenTown& open) {
        const GisNumericFormatPtr pFormat = formatOf(open, 3);
        if (!pFormat->yieldsPlainTexts())
            return;
        for (const double dNumber : aNumbers) {
            const std::string sText = pFormat->valueToText(dNumber);
            EXPECT_EQ(sText.find_first_not_of("0123456789+-.Ee"), std::string::npos) << sText;
        }
    });
}

TEST_F(Application, TellsADateAndTheSeparatorOfItsPaths) {
    inTown([](const OpenTown& open) {
        const Date today = open.pHost->today();
        EXPECT_GT(today.year, 1900);
        EXPECT_TRUE(today.month >= 1 && today.month <= 12 && today.day >= 1 && today.day <= 31);
        EXPECT_TRUE(open.pHost->pathSeparator() == '/' || open.pHost->pathSeparator() == '\\');
    });
}

} // namespace halvane::test::conformance
