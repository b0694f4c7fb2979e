#pragma once

#include "host/gdal/map/ElementReader.h"
#include "host/gdal/map/project/ProjectReferences.h"
#include "host/gdal/map/project/ProjectRemarks.h"

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

struct ProjectSource;

/// A layer of a project, before it is known in which maps it stands.
struct ProjectLayer {
    LayerModel model;
    bool bTable = false; ///< it has no shapes: a table of its maps
    std::vector<DomainFacts> domains;
};

/// The layers of a project by their identifiers.
class ProjectLayers {
public:
    /// @param reader stays, as do the two that follow. @param sFolder the project's.
    /// @param bConnections whether databases of servers may be reached.
    ProjectLayers(const ElementReader& reader, ProjectReferences& references, ProjectRemarks& remarks,
                  std::string sFolder, bool bConnections)
        : reader_(reader), references_(references), remarks_(remarks), sFolder_(std::move(sFolder)),
          bConnections_(bConnections) {}

    void read(const MarkupElement& root);

    /// Null for an identifier that no layer has, and for a layer of a kind that maps do not have.
    [[nodiscard]] ProjectLayer* find(const std::string& sId);
    /// Those that can be found, in the order of the project.
    [[nodiscard]] const std::vector<std::string>& ids() const { return ids_; }
    /// Those of the servers that may be reached.
    [[nodiscard]] const std::vector<ConnectionModel>& connections() const { return connections_; }

private:
    void readLayer(const MarkupElement& element);
    DataModel readData(const MarkupElement& element, const std::string& sName);
    void findFile(const ProjectSource& source, const std::string& sName, DataModel& data);
    void findServer(const ProjectSource& source, const std::string& sName, DataModel& data);
    void requireOneReading(const ProjectSource& source, DataModel& data);
    void remarkRest(const MarkupElement& element, const ProjectSource& source, const std::string& sName);

    const ElementReader& reader_;
    ProjectReferences& references_;
    ProjectRemarks& remarks_;
    std::string sFolder_;
    bool bConnections_;
    std::vector<std::string> ids_;
    std::unordered_map<std::string, ProjectLayer> layers_;
    std::vector<ConnectionModel> connections_;
    std::map<std::string, std::map<std::string, std::string>> openOptions_; // by file
};

} // namespace halvane::host::gdal
