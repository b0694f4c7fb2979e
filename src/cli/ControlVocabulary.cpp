#include "cli/ControlVocabulary.h"

#include <array>

namespace halvane::cli {

namespace {

using std::string_view;

constexpr std::array<string_view, controlWords> attributes{
    "Name",    "DataSource", "DataFrame",    "Identity",  "IdentityValue", "DataProperty",
    "Entries", "Target",     "DataLocation", "LinkField", "MeasureField",  "DecimalPlace"};

constexpr std::array<string_view, 1> entries{"Multiple"};
constexpr std::array<string_view, 1> targets{"Attribute"};
constexpr std::array<string_view, 4> identities{"LayerName", "TableName", "TagName", "FieldName"};
constexpr std::array<string_view, 29> dataSources{"Map",
                                                  "MapLayer",
                                                  "FeatureLayer",
                                                  "RasterLayer",
                                                  "TinLayer",
                                                  "Feature",
                                                  "FeatureTable",
                                                  "FeatureClass",
                                                  "FeatureAttributes",
                                                  "Table",
                                                  "Record",
                                                  "RelatedTable",
                                                  "RelatedRecord",
                                                  "Workspace",
                                                  "WorkspaceDomain",
                                                  "Relationship",
                                                  "TinWorkspace",
                                                  "RasterWorkspace",
                                                  "Field",
                                                  "SubType",
                                                  "SubTypeFieldInfo",
                                                  "Geometry.Length",
                                                  "Geometry.Point",
                                                  "Geometry.FromNode",
                                                  "Geometry.ToNode",
                                                  "Geometry.EndPoint",
                                                  "Geometry.Vertice",
                                                  "Time",
                                                  "External"};

constexpr std::array<ControlVocabulary::Keyword, 4> keywords{{{ControlWord::Entries, entries},
                                                              {ControlWord::Target, targets},
                                                              {ControlWord::Identity, identities},
                                                              {ControlWord::DataSource, dataSources, true}}};

} // namespace

const ControlVocabulary& controlVocabulary() {
    static constexpr ControlVocabulary vocabulary{attributes, keywords};
    return vocabulary;
}

} // namespace halvane::cli
