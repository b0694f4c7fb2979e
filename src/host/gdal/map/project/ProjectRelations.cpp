#include "host/gdal/map/project/ProjectRelations.h"

#include "base/Text.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/Locations.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

std::string nameOfRelation(const MarkupElement& relation) {
    return relation.text("name").empty() ? relation.text("id") : relation.text("name");
}

class WorkspacesReader {
public:
    WorkspacesReader(ProjectLayers& layers, ProjectRemarks& remarks) : layers_(layers), remarks_(remarks) {}

    std::vector<WorkspaceModel> read(const MarkupElement& root);

private:
    void readRelation(const MarkupElement& element);
    std::string whyLeftOut(const MarkupElement& element);
    bool isAloneInFolder(const std::string& sFile);
    WorkspaceModel& workspaceOf(const DataModel& data);
    void addDomain(DomainFacts domain, DataModel& data);

    ProjectLayers& layers_;
    ProjectRemarks& remarks_;
    std::vector<WorkspaceModel> all_;
    std::map<std::pair<bool, std::string>, std::size_t> places_; // in those, by location
    std::map<std::string, std::multiset<std::string>> stems_;    // of a folder's files
    std::set<std::pair<std::size_t, std::string>> names_;        // of relations, by workspace
};

bool sameCodes(const DomainFacts& one, const DomainFacts& other) {
    return one.fieldType == other.fieldType &&
           std::equal(one.codes.begin(), one.codes.end(), other.codes.begin(), other.codes.end(),
                      [](const CodedValue& left, const CodedValue& right) {
                          return left.vCode == right.vCode && left.sName == right.sName;
                      });
}

std::string datasetOf(const DataModel& data) {
    return data.sDataset.empty() ? stemOf(data.sLocation) : data.sDataset;
}

// A file that is all of its data; a database holds its own relations.
bool isPlainFile(const DataModel& data) {
    constexpr std::array<std::string_view, 7> aDatabases{"gpkg", "sqlite", "db", "mdb",
                                                         "zip",  "accdb",  "gdb"};
    const std::string sExtension = extensionOf(data.sLocation);
    return !data.bConnection &&
           std::find(aDatabases.begin(), aDatabases.end(), sExtension) == aDatabases.end() &&
           (data.sDataset.empty() || equalIgnoringCase(data.sDataset, stemOf(data.sLocation)));
}

bool isPlainFolder(const DataModel& data) {
    return !data.bConnection && isFolder(data.sLocation) && extensionOf(data.sLocation) != "gdb";
}

std::string commonFolderOf(const DataModel& data) {
    return isPlainFolder(data) ? data.sLocation : folderOf(data.sLocation);
}

void moveToFolder(DataModel& data) {
    if (isPlainFolder(data))
        return;
    data.sFile = data.sLocation;
    data.sDataset = stemOf(data.sLocation);
    data.sLocation = folderOf(data.sLocation);
}

bool WorkspacesReader::isAloneInFolder(const std::string& sFile) {
    const std::string sFolder = folderOf(sFile);
    auto [pStems, bNew] = stems_.try_emplace(sFolder);
    if (bNew)
        for (const std::string& sOne : dataFilesIn(sFolder))
            pStems->second.insert(upperCase(stemOf(sOne)));
    return pStems->second.count(upperCase(stemOf(sFile))) == 1;
}

WorkspaceModel& WorkspacesReader::workspaceOf(const DataModel& data) {
    const auto [pPlace, bNew] = places_.emplace(std::pair(data.bConnection, data.sLocation), all_.size());
    if (bNew) {
        WorkspaceModel& added = all_.emplace_back();
        added.place = data.place;
        added.sLocation = data.sLocation;
        added.bConnection = data.bConnection;
    }
    return all_[pPlace->second];
}

std::string WorkspacesReader::whyLeftOut(const MarkupElement& element) {
    ProjectLayer* pOrigin = layers_.find(element.text("referencedLayer"));
    ProjectLayer* pDestination = layers_.find(element.text("referencingLayer"));
    if (pOrigin == nullptr || pDestination == nullptr)
        return "of layers that are not there";
    if (element.children("fieldRef").size() != 1)
        return "by more than one field";
    DataModel& origin = pOrigin->model.data;
    DataModel& destination = pDestination->model.data;
    if (!origin.sWhyNot.empty() || !destination.sWhyNot.empty())
        return "of layers that cannot be read";
    if (origin.bConnection == destination.bConnection && origin.sLocation == destination.sLocation)
        return {};
    for (const DataModel* pData : {&origin, &destination})
        if (!isPlainFolder(*pData) && (!isPlainFile(*pData) || !isAloneInFolder(pData->sLocation)))
            return "between databases, or files with other data of their names";
    if (commonFolderOf(origin) != commonFolderOf(destination))
        return "between folders";
    moveToFolder(origin);
    moveToFolder(destination);
    return {};
}

void WorkspacesReader::readRelation(const MarkupElement& element) {
    std::string sName = nameOfRelation(element);
    const DataModel& origin = layers_.find(element.text("referencedLayer"))->model.data;
    const DataModel& destination = layers_.find(element.text("referencingLayer"))->model.data;
    WorkspaceModel& workspace = workspaceOf(origin);
    const auto lWorkspace = static_cast<std::size_t>(&workspace - all_.data());
    if (!names_.emplace(lWorkspace, upperCase(sName)).second)
        sName += " (" + element.text("id") + ")";
    RelationshipFacts facts;
    facts.sName = std::move(sName);
    facts.sOrigin = datasetOf(origin);
    facts.sDestination = datasetOf(destination);
    const MarkupElement fields = element.children("fieldRef").front();
    facts.sOriginPrimaryKey = fields.text("referencedField");
    facts.sOriginForeignKey = fields.text("referencingField");
    facts.bComposite = element.text("strength") == "Composition";
    workspace.relationships.push_back(std::move(facts));
}

std::vector<WorkspaceModel> WorkspacesReader::read(const MarkupElement& root) {
    std::vector<MarkupElement> relations;
    if (const auto list = root.child("relations"))
        for (const MarkupElement& element : list->children("relation")) {
            if (const std::string sWhy = whyLeftOut(element); !sWhy.empty())
                remarks_.add("relations " + sWhy + " are left out", nameOfRelation(element));
            else
                relations.push_back(element);
        }
    // Only now does each layer stand where it stays.
    for (const MarkupElement& element : relations)
        readRelation(element);
    if (const auto list = root.child("polymorphicRelations"))
        for (const MarkupElement& element : list->children())
            remarks_.add("relations to layers by their names are left out", nameOfRelation(element));
    for (const std::string& sId : layers_.ids()) {
        ProjectLayer& layer = *layers_.find(sId);
        if (layer.domains.empty() || !layer.model.data.sWhyNot.empty())
            continue;
        for (DomainFacts& domain : layer.domains)
            addDomain(std::move(domain), layer.model.data);
    }
    return std::move(all_);
}

// Layers may share their name. Where they share its domain as well, it stands once; else it gets a number.
void WorkspacesReader::addDomain(DomainFacts domain, DataModel& data) {
    std::vector<DomainFacts>& all = workspaceOf(data).domains;
    const std::string sFirst = domain.sName;
    const auto twin = [&] {
        return std::find_if(all.begin(), all.end(), [&](const DomainFacts& other) {
            return equalIgnoringCase(other.sName, domain.sName);
        });
    };
    for (int lTwin = 2; twin() != all.end() && !sameCodes(*twin(), domain); ++lTwin)
        domain.sName = sFirst + " (" + std::to_string(lTwin) + ")";
    for (FieldOverride& field : data.fields)
        if (field.sDomain == sFirst)
            field.sDomain = domain.sName;
    if (twin() == all.end())
        all.push_back(std::move(domain));
}

} // namespace

std::vector<WorkspaceModel> readProjectWorkspaces(const MarkupElement& root, ProjectLayers& layers,
                                                  ProjectRemarks& remarks) {
    return WorkspacesReader(layers, remarks).read(root);
}

} // namespace halvane::host::gdal
