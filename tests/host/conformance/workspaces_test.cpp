// Workspaces, and what they hold besides tables: domains, subtypes, relationship classes.

#include "host/conformance/Conformance.h"

#include "host/Relationships.h"
#include "host/Subtypes.h"

#include <algorithm>

namespace halvane::test::conformance {

namespace {

using namespace host;

class Workspaces : public HostTest {};
class Domains : public HostTest {
protected:
    /// For each domain of the workspace, in the order of the description.
    void ofEachDomain(const std::function<void(const GisDomain&, const TownDomain&)>& test) {
        inTown([&](const OpenTown& open) {
            const auto pRole = open.workspace()->domainsRole();
            ASSERT_NE(pRole, nullptr);
            const auto pDomains = pRole->domains();
            for (const TownDomain& told : town().aDomains) {
                const GisDomainPtr pDomain = pDomains->next();
                ASSERT_NE(pDomain, nullptr) << told.sName;
                test(*pDomain, told);
            }
            EXPECT_EQ(pDomains->next(), nullptr);
        });
    }
};
class Subtypes : public HostTest {};
class RelationshipClasses : public HostTest {};

bool isNoValue(const Value& value) {
    return isEmpty(value) || std::holds_alternative<Null>(value);
}

} // namespace

TEST_F(Workspaces, TellTheirPathAndType) {
    inTown([](const OpenTown& open) {
        EXPECT_EQ(open.workspace()->pathName(), open.sDatabase);
        EXPECT_EQ(open.workspace()->typeCode(), 1) << "a database of this machine";
    });
}

TEST_F(Workspaces, OpenTheirDatasetsByNameInAnyLetterCase) {
    inTown([this](const OpenTown& open) {
        const GisWorkspacePtr pWorkspace = open.workspace();
        for (const char* pName : {"Roads", "ROADS", "roads"}) {
            EXPECT_EQ(pWorkspace->openFeatureClass(pName)->datasetName(), town().roads.sName) << pName;
            EXPECT_EQ(pWorkspace->openTable(pName)->datasetName(), town().roads.sName) << pName;
        }
        for (const char* pName : {"Signs", "SIGNS", "signs"})
            EXPECT_EQ(pWorkspace->openTable(pName)->datasetName(), town().signs.sName) << pName;
        EXPECT_EQ(idsOf(*pWorkspace->openTable("Roads")->search(nullptr)), idsOf(town().roads));
    });
}

TEST_F(Workspaces, FailForADatasetThatTheyDoNotHold) {
    inTown([](const OpenTown& open) {
        const GisWorkspacePtr pWorkspace = open.workspace();
        EXPECT_TRUE(failsWithNumberAndText([&] { return pWorkspace->openFeatureClass("Nowhere"); }));
        EXPECT_TRUE(failsWithNumberAndText([&] { return pWorkspace->openTable("Nowhere"); }));
        EXPECT_TRUE(failsWithNumberAndText([&] { return pWorkspace->openFeatureClass("Signs"); }))
            << "a table without shapes";
    });
}

TEST_F(Domains, TellWhatTheyAre) {
    ofEachDomain([](const GisDomain& domain, const TownDomain& told) {
        constexpr std::int32_t lRange = 1;
        constexpr std::int32_t lCodedValues = 2;
        EXPECT_EQ(domain.name(), told.sName);
        EXPECT_EQ(domain.description(), told.sDescription);
        EXPECT_EQ(domain.fieldType(), static_cast<std::int32_t>(told.fieldType));
        EXPECT_EQ(domain.mergePolicy(), told.lMergePolicy);
        EXPECT_EQ(domain.splitPolicy(), told.lSplitPolicy);
        EXPECT_EQ(domain.domainType(), told.bounds.has_value() ? lRange : lCodedValues);
    });
}

TEST_F(Domains, OfCodesHaveThemInTheirOrder) {
    ofEachDomain([](const GisDomain& domain, const TownDomain& told) {
        ASSERT_EQ(domain.codeCount(), static_cast<std::int32_t>(told.aCodes.size()));
        for (std::size_t n = 0; n < told.aCodes.size(); ++n) {
            const CodedValue code = domain.code(static_cast<std::int32_t>(n));
            EXPECT_EQ(code.vCode, told.aCodes[n].vCode) << toText(code.vCode);
            EXPECT_EQ(code.sName, told.aCodes[n].sName);
        }
        EXPECT_TRUE(failsWithNumberAndText([&] { return domain.code(domain.codeCount()); }));
    });
}

TEST_F(Domains, OfRangesAloneHaveBounds) {
    ofEachDomain([](const GisDomain& domain, const TownDomain& told) {
        if (told.bounds.has_value()) {
            EXPECT_EQ(domain.minValue(), told.bounds->first) << toText(domain.minValue());
            EXPECT_EQ(domain.maxValue(), told.bounds->second) << toText(domain.maxValue());
            return;
        }
        for (const auto bound : {&GisDomain::minValue, &GisDomain::maxValue}) {
            Value vBound;
            const auto failure = failureOf([&] { return vBound = (domain.*bound)(); });
            EXPECT_TRUE(failure.has_value() || isNoValue(vBound)) << toText(vBound);
        }
    });
}

TEST_F(Domains, AreListedFromTheFirstAgainByWhoeverAsks) {
    inTown([this](const OpenTown& open) {
        const auto pRole = open.workspace()->domainsRole();
        ASSERT_NE(pRole, nullptr);
        const auto pFirst = pRole->domains();
        static_cast<void>(pFirst->next());
        EXPECT_EQ(pRole->domains()->next()->name(), town().aDomains[0].sName);
        EXPECT_EQ(pFirst->next()->name(), town().aDomains[1].sName);
    });
}

TEST_F(Subtypes, StandInTheirOrderWithTheirNames) {
    inTown([this](const OpenTown& open) {
        const GisSubtypesPtr pSubtypes = open.roads()->subtypes();
        ASSERT_NE(pSubtypes, nullptr);
        EXPECT_TRUE(pSubtypes->hasSubtypes());
        EXPECT_EQ(pSubtypes->subtypeFieldName(), town().subtypes.sField);
        EXPECT_EQ(pSubtypes->defaultSubtypeCode(), town().subtypes.lDefaultCode);
        ASSERT_EQ(pSubtypes->subtypeCount(), static_cast<std::int32_t>(town().subtypes.aSubtypes.size()));
        for (std::size_t n = 0; n < town().subtypes.aSubtypes.size(); ++n) {
            const auto& [lCode, sName] = town().subtypes.aSubtypes[n];
            EXPECT_EQ(pSubtypes->subtypeCode(static_cast<std::int32_t>(n)), lCode);
            EXPECT_EQ(pSubtypes->subtypeName(lCode), sName);
        }
        EXPECT_TRUE(isOutOfRange([&] { return pSubtypes->subtypeCode(pSubtypes->subtypeCount()); }));
    });
}

TEST_F(Subtypes, HaveDomainsAndDefaultsOfTheirFields) {
    inTown([this](const OpenTown& open) {
        const GisSubtypesPtr pSubtypes = open.roads()->subtypes();
        for (const TownSubtypes::FieldRule& rule : town().subtypes.aRules) {
            const GisDomainPtr pDomain = pSubtypes->domain(rule.lCode, rule.sField);
            ASSERT_NE(pDomain, nullptr) << rule.lCode;
            EXPECT_EQ(pDomain->name(), rule.sDomain);
            EXPECT_EQ(pSubtypes->defaultValue(rule.lCode, rule.sField), rule.vDefault);
        }
    });
}

TEST_F(Subtypes, HaveNothingForAFieldWithoutDomainAndDefault) {
    inTown([this](const OpenTown& open) {
        const GisSubtypesPtr pSubtypes = open.roads()->subtypes();
        for (const auto& [lCode, sName] : town().subtypes.aSubtypes) {
            EXPECT_EQ(pSubtypes->domain(lCode, "WIDTH"), nullptr) << sName;
            EXPECT_TRUE(isNoValue(pSubtypes->defaultValue(lCode, "WIDTH"))) << sName;
        }
    });
}

TEST_F(RelationshipClasses, TellWhatTheyJoin) {
    inTown([this](const OpenTown& open) {
        const TownRelationshipClass& told = town().relationshipClass;
        const auto pClasses = open.workspace()->relationshipClasses();
        const GisRelationshipClassPtr pClass = pClasses->next();
        ASSERT_NE(pClass, nullptr);
        EXPECT_EQ(pClass->name(), told.sName);
        EXPECT_EQ(pClass->forwardPathLabel(), told.sForwardPathLabel);
        EXPECT_EQ(pClass->backwardPathLabel(), told.sBackwardPathLabel);
        EXPECT_EQ(pClass->featureDatasetName(), told.sFeatureDatasetName);
        EXPECT_EQ(pClass->isAttributed(), told.bAttributed);
        EXPECT_EQ(pClass->isComposite(), told.bComposite);
        EXPECT_EQ(pClass->notification(), told.lNotification);
        EXPECT_EQ(pClass->cardinality(), told.lCardinality);
        EXPECT_EQ(pClass->originClassName(), told.sOriginClassName);
        EXPECT_EQ(pClass->destinationClassName(), told.sDestinationClassName);
        EXPECT_EQ(pClass->originPrimaryKey(), told.sOriginPrimaryKey);
        EXPECT_EQ(pClass->originForeignKey(), told.sOriginForeignKey);
        EXPECT_EQ(pClass->destinationPrimaryKey(), told.sDestinationPrimaryKey);
        EXPECT_EQ(pClass->destinationForeignKey(), told.sDestinationForeignKey);
        EXPECT_EQ(pClasses->next(), nullptr);
        EXPECT_EQ(pClasses->next(), nullptr) << "an enumeration ends once";
    });
}

} // namespace halvane::test::conformance
