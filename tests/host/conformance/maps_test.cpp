// Map documents, maps and their layers.

#include "host/conformance/Conformance.h"

namespace halvane::test::conformance {

namespace {

using namespace host;

class Maps : public HostTest {};
class Layers : public HostTest {
protected:
    /// One of the town's layers of that kind, groups looked through; nothing where it has none.
    [[nodiscard]] static GisLayerPtr find(const std::vector<TownLayer>& aLayers, const auto& holder,
                                          TownLayer::Kind kind) {
        for (std::size_t n = 0; n < aLayers.size(); ++n) {
            const GisLayerPtr pLayer = holder.layer(static_cast<std::int32_t>(n));
            if (aLayers[n].kind == kind)
                return pLayer;
            if (const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer))
                if (auto pFound = find(aLayers[n].aMembers, *pGroup, kind))
                    return pFound;
        }
        return nullptr;
    }
    [[nodiscard]] GisLayerPtr find(const OpenTown& open, TownLayer::Kind kind) const {
        return find(town().aLayers, *open.map(), kind);
    }
};

TownLayer::Kind kindOf(const GisLayerPtr& pLayer) {
    using Kind = TownLayer::Kind;
    if (std::dynamic_pointer_cast<GisFeatureLayer>(pLayer) != nullptr)
        return Kind::Feature;
    if (std::dynamic_pointer_cast<GisRasterLayer>(pLayer) != nullptr)
        return Kind::Raster;
    if (std::dynamic_pointer_cast<GisTinLayer>(pLayer) != nullptr)
        return Kind::Tin;
    return std::dynamic_pointer_cast<GisGroupLayer>(pLayer) == nullptr ? Kind::Other : Kind::Group;
}

/// The layers of a map or a group are those of the description, in its order, at every depth.
void expectLayers(const auto& holder, const std::vector<TownLayer>& aLayers) {
    ASSERT_EQ(holder.layerCount(), static_cast<std::int32_t>(aLayers.size()));
    for (std::size_t n = 0; n < aLayers.size(); ++n) {
        const GisLayerPtr pLayer = holder.layer(static_cast<std::int32_t>(n));
        ASSERT_NE(pLayer, nullptr) << aLayers[n].sName;
        EXPECT_EQ(pLayer->name(), aLayers[n].sName);
        EXPECT_EQ(kindOf(pLayer), aLayers[n].kind) << aLayers[n].sName;
        if (const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer))
            expectLayers(*pGroup, aLayers[n].aMembers);
    }
}

} // namespace

TEST_F(Maps, StandInTheOrderOfTheirDocument) {
    inTown([](const OpenTown& open) {
        ASSERT_EQ(open.pDocument->mapCount(), 2);
        EXPECT_EQ(open.pDocument->map(0)->name(), "Town");
        EXPECT_EQ(open.pDocument->map(1)->name(), "Region");
        EXPECT_TRUE(isOutOfRange([&] { return open.pDocument->map(2); }));
        EXPECT_TRUE(isOutOfRange([&] { return open.pDocument->map(-1); }));
    });
}

TEST_F(Maps, AreShownOneAtATime) {
    inTown([](const OpenTown& open) {
        ASSERT_NE(open.pDocument->focusMap(), nullptr);
        EXPECT_EQ(open.pDocument->focusMap()->name(), "Town");
    });
}

TEST_F(Maps, MayBeEmpty) {
    inTown([](const OpenTown& open) {
        const GisMapPtr pRegion = open.pDocument->map(1);
        EXPECT_EQ(pRegion->layerCount(), 0);
        EXPECT_EQ(pRegion->standaloneTableCount(), 0);
        EXPECT_EQ(pRegion->spatialReference(), nullptr);
        EXPECT_TRUE(isOutOfRange([&] { return pRegion->layer(0); }));
        EXPECT_TRUE(isOutOfRange([&] { return pRegion->standaloneTable(0); }));
    });
}

TEST_F(Maps, KnowALayerOnceItHasBeenLookedFor) {
    inTown([this](const OpenTown& open) {
        const auto lLayers = static_cast<std::int32_t>(town().aLayers.size());
        const GisMapPtr pMap = open.map();
        for (std::int32_t i = 0; i < lLayers; ++i)
            EXPECT_GT(pMap->layersFoundFor(i), i);
        EXPECT_EQ(pMap->layersFoundFor(lLayers), lLayers);
        EXPECT_GT(pMap->standaloneTablesFoundFor(1), 1);
        EXPECT_EQ(pMap->standaloneTablesFoundFor(2), 2);
    });
}

TEST_F(Maps, HoldTablesWhoseDataMayBeGone) {
    inTown([this](const OpenTown& open) {
        const GisMapPtr pMap = open.map();
        ASSERT_EQ(pMap->standaloneTableCount(), 2);
        EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), town().signs.sName);
        EXPECT_EQ(pMap->standaloneTable(1), nullptr);
        EXPECT_TRUE(isOutOfRange([&] { return pMap->standaloneTable(2); }));
    });
}

TEST_F(Layers, StandInTheOrderOfTheirMapAndGroups) {
    inTown([this](const OpenTown& open) { expectLayers(*open.map(), town().aLayers); });
}

TEST_F(Layers, EndWhereTheirMapOrGroupEnds) {
    inTown([this](const OpenTown& open) {
        const GisMapPtr pMap = open.map();
        EXPECT_TRUE(isOutOfRange([&] { return pMap->layer(pMap->layerCount()); }));
        EXPECT_TRUE(isOutOfRange([&] { return pMap->layer(-1); }));
        if (const auto pGroup =
                std::dynamic_pointer_cast<GisGroupLayer>(find(open, TownLayer::Kind::Group))) {
            EXPECT_TRUE(isOutOfRange([&] { return pGroup->layer(pGroup->layerCount()); }));
        }
    });
}

TEST_F(Layers, OfRastersTellTheirFile) {
    inTown([this](const OpenTown& open) {
        if (const auto pRaster =
                std::dynamic_pointer_cast<GisRasterLayer>(find(open, TownLayer::Kind::Raster))) {
            EXPECT_EQ(pRaster->filePath(), open.sPhoto);
        }
    });
}

TEST_F(Layers, OfTinsLeadToTheirWorkspace) {
    inTown([this](const OpenTown& open) {
        if (const auto pTin = std::dynamic_pointer_cast<GisTinLayer>(find(open, TownLayer::Kind::Tin))) {
            EXPECT_EQ(pTin->dataset()->workspace()->pathName(), open.sReliefDatabase);
        }
    });
}

TEST_F(Layers, OfFeaturesAreTablesOfTheirClass) {
    inTown([this](const OpenTown& open) {
        const GisFeatureLayerPtr pLayer = open.featureLayer(0);
        ASSERT_NE(pLayer, nullptr);
        EXPECT_EQ(pLayer->featureClass()->datasetName(), town().roads.sName);
        EXPECT_NE(std::dynamic_pointer_cast<GisFeatureClass>(pLayer->asTable()), nullptr);
        EXPECT_EQ(pLayer->asTable()->datasetName(), town().roads.sName);
    });
}

TEST_F(Layers, YieldTheirSelectionInItsOrder) {
    inTown([this](const OpenTown& open) {
        for (std::size_t n = 0; n < town().aLayers.size(); ++n) {
            const TownLayer& told = town().aLayers[n];
            if (told.kind != TownLayer::Kind::Feature)
                continue;
            const GisFeatureLayerPtr pLayer = open.featureLayer(static_cast<std::int32_t>(n));
            EXPECT_EQ(pLayer->selectionCount(), static_cast<std::int32_t>(told.aSelected.size()))
                << told.sName;
            if (told.aSelected.empty())
                continue;
            const GisCursorPtr pSelected = pLayer->searchSelection();
            EXPECT_EQ(idsOf(*pSelected), told.aSelected) << told.sName;
            EXPECT_EQ(pSelected->nextRow(), nullptr) << "a cursor ends once";
        }
    });
}

TEST_F(Layers, CountAllFeaturesOfTheirClassWhateverIsSelected) {
    inTown([this](const OpenTown& open) {
        for (std::size_t n = 0; n < town().aLayers.size(); ++n)
            if (town().aLayers[n].kind == TownLayer::Kind::Feature) {
                EXPECT_EQ(open.featureLayer(static_cast<std::int32_t>(n))->featureClass()->featureCount(),
                          static_cast<std::int64_t>(town().roads.aRows.size()));
            }
    });
}

} // namespace halvane::test::conformance
