#pragma once

#include "oracle/ControlTree.h"
#include "oracle/Random.h"
#include "oracle/RandomWorld.h"
#include "oracle/Vocabulary.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace halvane::oracle {

/// Makes one random control file. A function makes the nodes of one kind with what stands below them; how
/// many nodes the file gets altogether is limited.
class ControlFileMaker {
public:
    ControlFileMaker(Random& random, const World& world) : random_(random), world_(world) {}

    [[nodiscard]] ControlNode make();

private:
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    // ---- Pieces ----

    ControlNode named(const Attributes& attributes);
    ControlNode property(const std::string& sProperty);
    ControlNode repeated(const Attributes& attributes);
    /// A leaf for each of some properties.
    void addProperties(ControlNode& node, const Words& aProperties);
    std::string layerName();
    std::string tableName();
    std::string fieldName();
    std::string tagName();

    /// Adds nLeast to nMost nodes that fnNode makes, each of them perhaps put out of order.
    template<class Make>
    void addSome(ControlNode& node, std::int32_t nLeast, std::int32_t nMost, Make fnNode) {
        for (std::int32_t i = random_.between(nLeast, nMost); i > 0 && nBudget_ > 0; --i)
            node.aChildren.push_back(mutated(fnNode()));
    }

    // ---- What stands below the root, or in a group ----

    ControlNode scene();
    ControlNode mapScene();
    ControlNode tableScene();
    ControlNode workspaceScene();
    ControlNode someLeaf();

    // ---- Layers and what describes them ----

    ControlNode layerGroup();
    ControlNode layerScene();
    ControlNode layerChild();
    ControlNode reference();
    ControlNode imageScene();
    ControlNode fieldLoop();
    ControlNode subtypeLoop();
    ControlNode domainLoop();
    ControlNode codes();
    ControlNode relationshipLoop();

    // ---- Rows and their values ----

    ControlNode featureLeaf();
    ControlNode featureLoop();
    ControlNode fieldOfRow(const char* sKind);
    /// Binds another layer, and asks for something of the layer that is current.
    void addLayerChange(ControlNode& loop, const char* sRowKind);
    /// What depends on the layer that is current.
    ControlNode ofCurrentLayer();
    ControlNode featureChild();
    ControlNode recordLoop();
    ControlNode recordChild();
    ControlNode relatedGroup();
    ControlNode relatedLeaf();
    ControlNode geometryLoop();
    ControlNode geometryValue(const std::string& sKind);

    // ---- Nodes out of order ----

    ControlNode wild();
    /// Now and then something is put out of order.
    ControlNode mutated(ControlNode node);
    ControlNode remark();

    Random& random_;
    const World& world_;
    std::int32_t nBudget_ = 0;
};

} // namespace halvane::oracle
