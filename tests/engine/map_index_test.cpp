// What an index of a map finds, and what it asks the map.

#include "base/Failure.h"
#include "engine/sources/LayerSearch.h"
#include "engine/sources/MapIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

using host::GisLayerPtr;
using host::GisTablePtr;

class PlainLayer : public host::GisLayer {
public:
    explicit PlainLayer(std::string sName) : sName_(std::move(sName)) {}
    std::string name() const override {
        ++lAsked;
        if (sName_ == "broken")
            throw Failure::of(FailureNumber::HostFailure);
        return sName_;
    }
    void rename(std::string sName) { sName_ = std::move(sName); }

    mutable int lAsked = 0;

private:
    std::string sName_;
};

class Group : public host::GisGroupLayer {
public:
    Group(std::string sName, std::vector<GisLayerPtr> members)
        : sName_(std::move(sName)), members_(std::move(members)) {}
    std::string name() const override { return sName_; }
    std::int32_t layerCount() const override { return static_cast<std::int32_t>(members_.size()); }
    GisLayerPtr layer(std::int32_t lIndex) const override {
        return members_.at(static_cast<std::size_t>(lIndex));
    }

private:
    std::string sName_;
    std::vector<GisLayerPtr> members_;
};

class Table : public host::GisTable {
public:
    explicit Table(std::string sName) : sName_(std::move(sName)) {}
    std::string datasetName() const override { return sName_; }
    host::GisFieldsPtr fields() const override { return nullptr; }
    host::GisCursorPtr search(const host::GisQueryFilter*) override { return nullptr; }
    host::GisWorkspacePtr workspace() const override { return nullptr; }

private:
    std::string sName_;
};

class ListMap : public host::GisMap {
public:
    std::string name() const override { return "map"; }
    std::int32_t layerCount() const override {
        ++lCounted;
        return static_cast<std::int32_t>(layers.size());
    }
    std::int32_t layersFoundFor(std::int32_t lIndex) const override {
        lSoughtLast = lIndex;
        return std::min(lIndex + 1, static_cast<std::int32_t>(layers.size()));
    }
    GisLayerPtr layer(std::int32_t lIndex) const override {
        ++lLayersAsked;
        return layers.at(static_cast<std::size_t>(lIndex));
    }
    std::int32_t standaloneTableCount() const override { return static_cast<std::int32_t>(tables.size()); }
    GisTablePtr standaloneTable(std::int32_t lIndex) const override {
        ++lTablesAsked;
        return tables.at(static_cast<std::size_t>(lIndex));
    }
    host::GisSpatialReferencePtr spatialReference() const override { return nullptr; }

    std::vector<GisLayerPtr> layers;
    std::vector<GisTablePtr> tables;
    mutable int lLayersAsked = 0;
    mutable int lTablesAsked = 0;
    mutable int lCounted = 0;
    mutable std::int32_t lSoughtLast = -1;
};

std::shared_ptr<PlainLayer> layer(std::string sName) {
    return std::make_shared<PlainLayer>(std::move(sName));
}

/// What a search ends with: a layer, nothing, or a failure.
struct End {
    GisLayerPtr pLayer;
    bool bFailed = false;
    friend bool operator==(const End&, const End&) = default;
};

template<class Find>
End endOf(Find&& find) {
    try {
        return {find(), false};
    } catch (const Failure&) {
        return {nullptr, true};
    }
}

constexpr std::array<const char*, 12> aNames{"a", "A", "b", "\xC3\xA4", "\xC3\x84", "c",
                                             "d", "",  "e", "broken",   "g:a",      "nowhere"};

GisLayerPtr randomLayer(std::mt19937& random, int lDepth) {
    const std::string sName = aNames.at(random() % 10);
    if (lDepth == 0 || random() % 4 != 0)
        return random() % 16 == 0 && lDepth > 0 ? GisLayerPtr() : layer(sName);
    std::vector<GisLayerPtr> members;
    for (auto n = random() % 4; n > 0; --n)
        members.push_back(randomLayer(random, 0));
    return std::make_shared<Group>(random() % 2 == 0 ? "g" : sName, std::move(members));
}

TEST(MapIndex, FindsWhatASearchFromTheStartFindsAndFailsWhereItFails) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same maps each time
    int lFound = 0;
    int lFailed = 0;
    for (int lMap = 0; lMap < 400; ++lMap) {
        const auto pMap = std::make_shared<ListMap>();
        for (auto n = random() % 12; n > 0; --n) {
            pMap->layers.push_back(randomLayer(random, 1));
            pMap->tables.push_back(random() % 5 == 0 ? GisTablePtr()
                                                     : std::make_shared<Table>(aNames.at(random() % 9)));
        }
        MapIndex index(pMap);
        for (int l = 0; l < 60; ++l) {
            const std::string sName = aNames.at(random() % aNames.size());
            const End expected = endOf([&] { return FindLayerByName(*pMap, sName); });
            EXPECT_TRUE(endOf([&] { return index.findLayer(sName); }) == expected) << lMap << " " << sName;
            EXPECT_EQ(index.findTable(sName), findTableByName(*pMap, sName)) << lMap << " " << sName;
            lFound += expected.pLayer != nullptr ? 1 : 0;
            lFailed += expected.bFailed ? 1 : 0;
        }
    }
    EXPECT_GT(lFound, 1000);
    EXPECT_GT(lFailed, 1000);
}

TEST(MapIndex, AsksForEachNameOnceHoweverOftenItIsSearchedFor) {
    const auto pMap = std::make_shared<ListMap>();
    std::vector<std::shared_ptr<PlainLayer>> layers;
    for (int l = 0; l < 100; ++l) {
        layers.push_back(layer("layer" + std::to_string(l)));
        pMap->layers.push_back(layers.back());
        pMap->tables.push_back(std::make_shared<Table>("table" + std::to_string(l)));
    }
    MapIndex index(pMap);
    for (int l = 0; l < 100; ++l) {
        EXPECT_EQ(index.findLayer("LAYER" + std::to_string(l)), layers[static_cast<std::size_t>(l)]);
        EXPECT_NE(index.findTable("TABLE" + std::to_string(l)), nullptr);
    }
    EXPECT_EQ(pMap->lLayersAsked, 100);
    EXPECT_EQ(pMap->lTablesAsked, 100);
    EXPECT_EQ(index.findLayer("layer0"), layers[0]);
    EXPECT_EQ(pMap->lLayersAsked, 101);
}

TEST(MapIndex, AsksNoFurtherThanTheLayerThatItFinds) {
    const auto pMap = std::make_shared<ListMap>();
    const auto pLater = layer("later");
    pMap->layers = {layer("first"), layer("second"), pLater};
    MapIndex index(pMap);
    EXPECT_EQ(index.findLayer("second"), pMap->layers[1]);
    EXPECT_EQ(pLater->lAsked, 0);
    EXPECT_EQ(pMap->lSoughtLast, 1);
    EXPECT_EQ(pMap->lCounted, 0);
}

TEST(MapIndex, FindsALayerThatGotItsNameSinceThen) {
    const auto pMap = std::make_shared<ListMap>();
    const auto pNameless = layer("");
    const auto pNamed = layer("roads");
    pMap->layers = {pNameless, pNamed};
    MapIndex index(pMap);
    EXPECT_EQ(index.findLayer("roads"), pNamed);
    pNameless->rename("Roads");
    EXPECT_EQ(index.findLayer("roads"), pNameless);
}

TEST(MapIndex, FindsATableThatCouldNotBeOpenedBefore) {
    const auto pMap = std::make_shared<ListMap>();
    pMap->tables = {nullptr, std::make_shared<Table>("owners")};
    MapIndex index(pMap);
    EXPECT_EQ(index.findTable("owners"), pMap->tables[1]);
    pMap->tables[0] = std::make_shared<Table>("OWNERS");
    EXPECT_EQ(index.findTable("owners"), pMap->tables[0]);
}

TEST(MapIndexes, ForgetWhenTheHostMayHaveChanged) {
    const auto pMap = std::make_shared<ListMap>();
    const auto pRoads = layer("roads");
    pMap->layers = {layer("paths"), pRoads};
    MapIndexes indexes;
    EXPECT_EQ(indexes.of(pMap, 1).findLayer("roads"), pRoads);
    pMap->layers[0] = layer("roads");
    EXPECT_EQ(indexes.of(pMap, 1).findLayer("roads"), pRoads);
    EXPECT_EQ(indexes.of(pMap, 2).findLayer("roads"), pMap->layers[0]);
}

TEST(MapIndexes, KeepMapsApart) {
    const auto pTown = std::make_shared<ListMap>();
    const auto pHarbour = std::make_shared<ListMap>();
    pTown->layers = {layer("roads")};
    pHarbour->layers = {layer("roads")};
    MapIndexes indexes;
    for (int l = 0; l < 3; ++l) {
        EXPECT_EQ(indexes.of(pTown, 1).findLayer("roads"), pTown->layers[0]);
        EXPECT_EQ(indexes.of(pHarbour, 1).findLayer("roads"), pHarbour->layers[0]);
    }
}

TEST(MapIndexes, AnswerForMoreMapsThanTheyKeep) {
    std::vector<std::shared_ptr<ListMap>> aMaps(20);
    for (auto& pMap : aMaps) {
        pMap = std::make_shared<ListMap>();
        pMap->layers = {layer("paths"), layer("roads")};
    }
    MapIndexes indexes;
    for (int lRound = 0; lRound < 2; ++lRound)
        for (const auto& pMap : aMaps)
            EXPECT_EQ(indexes.of(pMap, 1).findLayer("roads"), pMap->layers[1]);
}

TEST(MapIndex, PassesOverLayersThatTheHostDoesNotGive) {
    const auto pMap = std::make_shared<ListMap>();
    pMap->layers = {nullptr, layer("roads"), nullptr};
    MapIndex index(pMap);
    EXPECT_EQ(index.findLayer("paths"), nullptr);
    EXPECT_EQ(index.findLayer("roads"), pMap->layers[1]);
    pMap->layers[1] = nullptr; // it went since then
    EXPECT_EQ(index.findLayer("roads"), nullptr);
}

} // namespace
} // namespace halvane::test
