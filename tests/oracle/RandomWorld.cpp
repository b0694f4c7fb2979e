#include "oracle/RandomWorld.h"

#include "host/IExternalProcessor.h"
#include "host/memory/Memory.h"
#include "oracle/RandomTables.h"

namespace halvane::oracle {

using namespace host::memory;

namespace {

std::string textOf(const dCollection& objects, const std::string& sKey) {
    const Value vObject = objects.GetValue(sKey);
    if (const auto pMap = objectAs<host::GisMap>(vObject))
        return pMap->name();
    if (const auto pLayer = objectAs<host::GisLayer>(vObject))
        return pLayer->name();
    if (const auto pTable = objectAs<host::GisTable>(vObject))
        return pTable->datasetName();
    if (const auto pWorkspace = objectAs<host::GisWorkspace>(vObject))
        return pWorkspace->pathName();
    if (const auto pRow = objectAs<host::GisRow>(vObject))
        return std::to_string(pRow->objectId());
    if (const auto pPoint = objectAs<host::GisPoint>(vObject))
        return std::to_string(pPoint->x());
    return "?";
}

/// Tells all that it is shown, so that an object too many, too few or out of order shows in the output.
class Telling final : public IExternalProcessor {
public:
    std::string Process(dCollection& dColSpatialVariables) override {
        std::string sText;
        for (const auto& sKey : dColSpatialVariables.ReturnKeys())
            sText += sKey + "=" + textOf(dColSpatialVariables, sKey) + ";";
        return sText;
    }
};

/// Fails for every second object that it is shown most lately.
class Failing final : public IExternalProcessor {
public:
    std::string Process(dCollection& dColSpatialVariables) override {
        const Value vRow = dColSpatialVariables.GetValue("Feature");
        const auto pRow = objectAs<host::GisRow>(vRow);
        if (pRow == nullptr || pRow->objectId() % 2 == 1)
            throw Failure(FailureNumber::HostFailure, "the processor failed");
        return "processed";
    }
};

/// Makes the parts of a world.
class WorldMaker {
public:
    explicit WorldMaker(Random& random) : random_(random), pHost_(MemoryHost::make()) {}

    World make() {
        world_.setting.pHost = pHost_;
        makeHost();
        makeWorkspaces();
        makeDocument();
        makeTags();
        makeOptions();
        return std::move(world_);
    }

private:
    void makeHost() {
        pHost_->setToday({2026, 11, static_cast<std::uint8_t>(random_.between(1, 28)), 0, 0, 0});
        if (random_.chance(30))
            pHost_->setPathSeparator('/');
        pHost_->registerComponent("Tell.All", [] { return std::make_shared<Telling>(); });
        pHost_->registerComponent("Fail.Odd", [] { return std::make_shared<Failing>(); });
        pHost_->registerComponent("No.Role", [] { return dCollection::create(); });
        world_.aProcessors = {"Tell.All", "Fail.Odd", "No.Role", "Not.There"};
    }

    void makeWorkspaces() {
        const std::vector<std::string> aPaths{"C:\\data\\town.mdb", "\\\\server\\share\\data",
                                              "/data/folder"};
        for (const std::string& sPath : aPaths) {
            if (!random_.chance(70))
                continue;
            const auto pWorkspace = MemoryWorkspace::make(sPath, random_.between(0, 3));
            fillWorkspace(random_, *pWorkspace);
            const auto pClass = randomFeatureClass(random_, "ONDISK");
            const auto pTable = randomTable(random_, "LISTING");
            pWorkspace->add(pClass);
            pWorkspace->add(pTable);
            pHost_->registerWorkspace(sPath, pWorkspace);
            aWorkspaces_.push_back(pWorkspace);
            world_.aOwned.push_back(pWorkspace);
        }
        world_.aClasses = {"ONDISK", "LISTING"};
        world_.aLocations = aPaths;
        world_.aLocations.emplace_back("C:\\connections\\town.sde");
        world_.aLocations.emplace_back("/nowhere");
    }

    MemoryWorkspacePtr someWorkspace() {
        return aWorkspaces_.empty() || random_.chance(15) ? nullptr : random_.pick(aWorkspaces_);
    }

    void makeDocument() {
        for (const char* sName : {"ROADS", "HOUSES", "WELLS"}) {
            if (!aClasses_.empty() && random_.chance(30))
                continue;
            const auto pClass = randomFeatureClass(random_, sName);
            if (const auto pWorkspace = someWorkspace())
                pWorkspace->add(pClass);
            if (random_.chance(70))
                pClass->setSpatialReference(randomReference(random_));
            giveSubtypes(random_, *pClass);
            aClasses_.push_back(std::make_shared<FaultyFeatureClass>(pClass, randomFaults(random_)));
        }
        std::vector<host::GisMapPtr> aMaps;
        for (const char* sName : {"Town Map", "Harbour",
                                  "\xC3\x9C"
                                  "bersicht"}) {
            if (!aMaps.empty() && random_.chance(60))
                continue;
            const World namesBefore = world_;
            aMaps.push_back(makeMap(sName));
            // Control files mostly use what the map that is shown holds.
            if (!world_.aMaps.empty() && random_.chance(80)) {
                world_.aFeatureLayers = namesBefore.aFeatureLayers;
                world_.aTables = namesBefore.aTables;
            }
            world_.aMaps.emplace_back(sName);
        }
        if (random_.chance(2))
            return; // an export without a document
        const auto pDocument = MemoryMapDocument::make(aMaps);
        if (random_.chance(10))
            pDocument->setFocusMap(random_.chance(50) ? nullptr : random_.pick(aMaps));
        world_.setting.pMapDocument = pDocument;
    }

    host::GisMapPtr makeMap(const std::string& sName) {
        const auto pMap = MemoryMap::make(sName);
        const std::int32_t lLayers = random_.between(1, 5);
        for (std::int32_t i = 0; i < lLayers; ++i)
            pMap->addLayer(makeLayer(true));
        if (random_.chance(30))
            pMap->addLayer(MemoryFeatureLayer::make(bareLayer, nullptr));
        for (const char* sTable : {"SIGNS", "POSTS"}) {
            if (random_.chance(70))
                pMap->addTable(makeTable(sTable));
            if (random_.chance(5))
                pMap->addTable(nullptr);
        }
        if (random_.chance(70))
            pMap->setSpatialReference(randomReference(random_));
        return pMap;
    }

    host::GisTablePtr makeTable(const std::string& sName) {
        const auto pTable = randomTable(random_, sName);
        if (const auto pWorkspace = someWorkspace())
            pWorkspace->add(pTable);
        world_.aTables.push_back(sName);
        return std::make_shared<FaultyTable>(pTable, randomFaults(random_));
    }

    host::GisLayerPtr makeLayer(bool bMayGroup) {
        const std::size_t nKind = random_.below(100);
        if (nKind < 16) {
            const std::string sName = random_.oneOf({"Photo", "Relief"});
            world_.aRasterLayers.push_back(sName);
            return MemoryRasterLayer::make(sName,
                                           random_.oneOf({"D:\\data\\dem.img", "/data/dem.img", "dem.img"}));
        }
        if (nKind < 28) {
            world_.aTinLayers.emplace_back("Surface");
            return MemoryTinLayer::make("Surface",
                                        random_.chance(15) ? nullptr : MemoryDataset::make(someWorkspace()));
        }
        if (bMayGroup && nKind < 42) {
            std::vector<host::GisLayerPtr> aMembers;
            const std::string sName = random_.oneOf({"Base", "BASE", "More"});
            for (std::int32_t i = random_.between(1, 3); i > 0; --i) {
                const std::size_t nNamesBefore = world_.aFeatureLayers.size();
                aMembers.push_back(makeLayer(random_.chance(15)));
                if (world_.aFeatureLayers.size() > nNamesBefore && random_.chance(50))
                    world_.aFeatureLayers.back() = sName + ":" + world_.aFeatureLayers.back();
            }
            return MemoryGroupLayer::make(sName, aMembers);
        }
        return makeFeatureLayer();
    }

    host::GisLayerPtr makeFeatureLayer() {
        const std::string sName = random_.oneOf({"Roads", "Houses", "Wells", "Piers", "roads"});
        world_.aFeatureLayers.push_back(sName);
        const std::size_t nTrouble = random_.below(100);
        if (nTrouble < 5)
            return MemoryFeatureLayer::make(sName, nullptr);
        std::vector<std::int64_t> aSelected;
        if (random_.chance(30)) {
            for (std::int32_t i = random_.between(1, 3); i > 0; --i)
                aSelected.push_back(random_.between(1, 5));
        }
        const bool bClassFails = random_.mayFail() && nTrouble < 13;
        return std::make_shared<FaultyFeatureLayer>(sName, random_.pick(aClasses_), aSelected, bClassFails);
    }

    std::string aliasOfTag() {
        if (random_.chance(20))
            return "";
        return world_.aFeatureLayers.empty() || random_.chance(40)
                   ? random_.oneOf({"Roads", "Houses", "SIGNS", "Photo"})
                   : random_.pick(world_.aFeatureLayers);
    }

    /// Pairs tags with the names of layers, and below them tags with the aliases of fields. In every second
    /// document all tags stand for one layer of the map.
    void makeTags() {
        if (!random_.chance(40))
            return;
        world_.sTagPath = random_.oneOf({"//Tags/Tag", "/Doc/Tags/Tag/"});
        world_.sTagDocument = "<Doc><Tags>";
        const bool bOneLayer = !world_.aFeatureLayers.empty() && random_.chance(50);
        const std::string sOneLayer = bOneLayer ? random_.pick(world_.aFeatureLayers) : "";
        for (const char* sTag : {"T1", "T2", "t1"}) {
            Tag tag{sTag, bOneLayer ? sOneLayer : aliasOfTag(), {}};
            for (const char* sField : {"F1", "F2", "F3"})
                tag.aFields.emplace_back(sField, random_.oneOf({"Full name", "WIDTH", "Code", "None"}));
            world_.sTagDocument +=
                "<Tag TagName='" + tag.sTagName + "' Alias='" + tag.sAlias + "'><QvFields>";
            for (const auto& [sTagName, sAlias] : tag.aFields)
                world_.sTagDocument += "<QvField TagName='" + sTagName + "' Alias='" + sAlias + "'/>";
            world_.sTagDocument += "</QvFields></Tag>";
            world_.setting.aTags.push_back(tag);
        }
        world_.sTagDocument += "</Tags></Doc>";
    }

    void makeOptions() {
        world_.setting.bIgnoreComments = random_.chance(50);
        if (random_.chance(6))
            world_.setting.lItemLimit = random_.between(0, 4);
        if (random_.chance(2))
            world_.setting.lCancelAtItem = random_.between(1, 6);
        if (random_.mayFail() && random_.chance(4))
            pHost_->faults().failAlways(random_.oneOf(
                {"GisDomain.name", "GisDomain.maxValue", "GisDomain.code", "GisRelationshipClass.cardinality",
                 "GisSubtypes.defaultValue", "GisSubtypes.subtypeName", "GisSpatialReference.description",
                 "GisSpatialReference.zDomain", "GisPoint.y", "GisGeometry.length", "GisWorkspace.typeCode",
                 "GisNumericFormat.valueToText", "GisTinLayer.dataset", "GisMap.spatialReference"}));
    }

    Random& random_;
    MemoryHostPtr pHost_; // first of the host's objects: they share its faults
    World world_;
    std::vector<MemoryWorkspacePtr> aWorkspaces_;
    std::vector<FaultyFeatureClassPtr> aClasses_;
};

} // namespace

World randomWorld(Random& random) {
    return WorldMaker(random).make();
}

} // namespace halvane::oracle
