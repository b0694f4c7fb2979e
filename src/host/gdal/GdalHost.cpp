#include "host/gdal/GdalHost.h"

#include "base/Choices.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/map/FileKind.h"
#include "host/gdal/map/MapDocumentBuilder.h"
#include "host/gdal/map/MapDocumentReader.h"
#include "host/gdal/map/project/ProjectReader.h"
#include "host/gdal/objects/Environment.h"
#include "host/gdal/objects/Layers.h"
#include "host/gdal/objects/Map.h"
#include "host/gdal/objects/ProcessorLibrary.h"
#include "host/gdal/objects/Services.h"
#include "host/gdal/source/DataInUse.h"
#include "host/gdal/source/Interruption.h"
#include "host/gdal/source/Locations.h"

#include <charconv>
#include <map>
#include <optional>

namespace halvane::host::gdal {

struct GdalHost::State {
    EnvironmentPtr pEnvironment = std::make_shared<Environment>();
    std::map<std::string, ComponentFactory> components; // by upper-cased ProgID
    bool bConnections = false;                          // of projects
};

namespace {

std::optional<std::int64_t> identifier(std::string_view sText) {
    std::int64_t lId = 0;
    const auto [pEnd, code] = std::from_chars(sText.data(), sText.data() + sText.size(), lId);
    return code == std::errc() && pEnd == sText.data() + sText.size() && !sText.empty() ? std::optional(lId)
                                                                                        : std::nullopt;
}

// The names of all feature layers, those in groups too.
template<class Container>
void addFeatureLayers(const Container& container, std::vector<std::string>& names) {
    for (std::int32_t lIndex = 0; lIndex < container.layerCount(); ++lIndex) {
        const GisLayerPtr pLayer = container.layer(lIndex);
        if (dynamic_cast<const GisFeatureLayer*>(pLayer.get()) != nullptr)
            names.push_back(pLayer->name());
        else if (const auto* pGroup = dynamic_cast<const GisGroupLayer*>(pLayer.get()))
            addFeatureLayers(*pGroup, names);
    }
}

SelectionChoice choiceOf(std::string_view sText) {
    SelectionChoice choice;
    for (std::size_t nStart = 0; nStart <= sText.size();) {
        const std::size_t nEnd = std::min(sText.find(',', nStart), sText.size());
        const auto lId = identifier(trimBlanks(sText.substr(nStart, nEnd - nStart)));
        if (!lId)
            return {{}, std::string(sText)};
        choice.ids.push_back(*lId);
        nStart = nEnd + 1;
    }
    return choice;
}

std::shared_ptr<GdalMapDocument> own(const GisMapDocumentPtr& pDocument) {
    auto pOwn = std::dynamic_pointer_cast<GdalMapDocument>(pDocument);
    if (pOwn == nullptr)
        throw Failure(FailureNumber::InvalidProcedureCall, "The map document is not one of this host");
    return pOwn;
}

} // namespace

GdalHost::GdalHost(const GdalHostOptions& options) : pState_(std::make_unique<State>()) {
    setBaseFolder(options.sBaseFolder);
}

GdalHost::~GdalHost() = default;

void GdalHost::endWhen(bool (*pTest)() noexcept) noexcept {
    setInterruptionTest(pTest);
}

std::shared_ptr<GdalHost> GdalHost::create(const GdalHostOptions& options) {
    return std::shared_ptr<GdalHost>(new GdalHost(options));
}

void GdalHost::setBaseFolder(const std::string& sFolder) {
    pState_->pEnvironment->setBaseFolder(sFolder.empty() ? sFolder : filePathOf(sFolder, currentFolder()));
}

void GdalHost::allowConnections() {
    pState_->bConnections = true;
}

GisMapDocumentPtr GdalHost::openMapDocument(const std::string& sPath) {
    const std::string sFile = filePathOf(sPath, currentFolder());
    const FileKind kind = fileKindOf(sFile);
    if (kind == FileKind::MapDocument)
        return buildMapDocument(pState_->pEnvironment, readMapDocument(sFile));
    if (kind == FileKind::Project)
        return buildMapDocument(pState_->pEnvironment, readProject(sFile, pState_->bConnections));
    if (kind == FileKind::BrokenMarkup)
        static_cast<void>(readMapDocument(sFile)); // fails and says why
    return mapOfDataset(pState_->pEnvironment, sFile);
}

std::vector<std::string> GdalHost::problems(const GisMapDocumentPtr& pDocument) const {
    std::vector<std::string> all;
    for (const GdalMapPtr& pMap : own(pDocument)->maps()) {
        const std::vector<std::string> problems = pMap->problems();
        all.insert(all.end(), problems.begin(), problems.end());
    }
    return all;
}

std::vector<std::string> GdalHost::remarks(const GisMapDocumentPtr& pDocument) const {
    return own(pDocument)->remarks();
}

std::string GdalHost::dataWith(const std::string& sFile, const std::vector<std::string>& locations) const {
    Environment& environment = *pState_->pEnvironment;
    for (const std::string& sLocation : locations) {
        try {
            if (!environment.hasConnection(sLocation))
                environment.addDataLocation(environment.filePath(sLocation));
        } catch (const Failure&) {
            // A location that is refused names no data; the export tells of it.
        }
    }
    return environment.dataWith(sFile);
}

DataRead GdalHost::dataRead() const {
    return pState_->pEnvironment->dataRead();
}

std::shared_ptr<void> GdalHost::holdServers() {
    return pState_->pEnvironment->pool().snapshots().hold();
}

std::string GdalHost::lostServer() const {
    return pState_->pEnvironment->pool().snapshots().lost();
}

std::optional<RowsUnderWay> GdalHost::rowsUnderWay() const {
    return pState_->pEnvironment->pool().loops()->outermost();
}

std::vector<LostShapes> GdalHost::takeLostShapes() const {
    return pState_->pEnvironment->pool().shapeLosses()->take();
}

std::vector<GisWorkspacePtr> GdalHost::namedWorkspaces() const {
    return pState_->pEnvironment->workspacesWithFacts();
}

void GdalHost::selectFeatures(const GisMapDocumentPtr& pDocument, std::string_view sLayer,
                              std::string_view sChoice) {
    const GdalMapPtr pMap = own(pDocument)->shownMap();
    const auto pLayer = pMap->findFeatureLayer(sLayer);
    if (pLayer == nullptr) {
        Choice choice{"it has", "feature layer", "feature layers", {}};
        addFeatureLayers(*pMap, choice.names);
        throw Failure(FailureNumber::HostFailure, "The map \"" + pMap->name() + "\" has no feature layer \"" +
                                                      std::string(sLayer) + "\"; " +
                                                      meantOrThere(sLayer, choice));
    }
    if (trimBlanks(sChoice).empty()) {
        throw Failure(FailureNumber::HostFailure, "The selection of \"" + std::string(sLayer) +
                                                      "\" is empty: give feature identifiers separated by "
                                                      "commas, or a where clause");
    }
    if (choiceOf(sChoice).ids.empty() &&
        sChoice.find_first_not_of("0123456789.,;+- ") == std::string_view::npos) {
        throw Failure(FailureNumber::HostFailure,
                      "\"" + std::string(sChoice) + "\" selects nothing of \"" + std::string(sLayer) +
                          "\": identifiers are whole numbers separated by commas");
    }
    pLayer->select(choiceOf(sChoice));
    pLayer->testSelection();
    // A layer without a selection yields all its features: the opposite of what was asked for.
    if (pLayer->selectionCount() == 0) {
        throw Failure(FailureNumber::HostFailure, "No feature of \"" + std::string(sLayer) +
                                                      "\" satisfies \"" + std::string(sChoice) + "\"");
    }
}

void GdalHost::registerComponent(std::string_view sProgId, ComponentFactory factory) {
    pState_->components.insert_or_assign(upperCase(sProgId), std::move(factory));
}

void GdalHost::loadProcessorLibrary(const std::string& sPath) {
    class Registrar : public HalvaneRegistrar {
    public:
        explicit Registrar(GdalHost& owner) : owner_(owner) {}
        void registerProcessor(std::string_view sProgId, ProcessorFactory factory) override {
            owner_.registerComponent(sProgId, std::move(factory));
        }

    private:
        GdalHost& owner_;
    };
    Registrar registrar(*this);
    loadProcessors(filePathOf(sPath, currentFolder()), registrar);
}

ObjectPtr GdalHost::createComponent(std::string_view sProgId) {
    const auto pFound = pState_->components.find(upperCase(sProgId));
    ObjectPtr pObject = pFound == pState_->components.end() ? nullptr : pFound->second();
    if (pObject == nullptr) {
        throw Failure(FailureNumber::CannotCreateComponent,
                      "The component \"" + std::string(sProgId) + "\" cannot be created: " +
                          (pFound == pState_->components.end() ? "no processor of that name is registered"
                                                               : "its factory gave nothing"));
    }
    return pObject;
}

GisFeatureLayerPtr GdalHost::newFeatureLayer() {
    return std::make_shared<GdalFeatureLayer>();
}

GisPropertySetPtr GdalHost::newPropertySet() {
    return std::make_shared<GdalPropertySet>();
}

GisWorkspaceFactoryPtr GdalHost::newWorkspaceFactory(WorkspaceFactoryKind kind) {
    return std::make_shared<GdalWorkspaceFactory>(pState_->pEnvironment, kind);
}

GisCatalogPtr GdalHost::newCatalog() {
    return std::make_shared<EmptyCatalog>();
}

GisNumericFormatPtr GdalHost::newNumericFormat() {
    return std::make_shared<GdalNumericFormat>();
}

GisSpatialReferencePtr GdalHost::referenceOf(std::string_view sAuthorityCode) {
    return registeredReference(sAuthorityCode);
}

Date GdalHost::today() const {
    return localDate();
}

const DataHosts& dataHosts() noexcept {
    static constexpr DataHosts hosts{[]() -> DataHostPtr { return GdalHost::create(); }, &GdalHost::endWhen,
                                     &dataInUse};
    return hosts;
}

} // namespace halvane::host::gdal
