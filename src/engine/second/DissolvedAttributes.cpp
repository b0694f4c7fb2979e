#include "engine/second/DissolvedAttributes.h"

#include "engine/second/SecondControl.h"

namespace halvane {

namespace {

bool isLoop(const ControlNode& node) {
    return node.bRepeated || (node.pSecond != nullptr && (node.pSecond->forEach || node.pSecond->rows));
}

/// Goes over the nodes that write into one element.
class Writing {
public:
    explicit Writing(std::vector<SecondProblem>& problems) : problems_(problems) {}

    /// @param bDissolved the node writes into the element of another one.
    /// @param bAgain what stands in it may be written several times.
    void writeChildren(const ControlNode& node, bool bDissolved, bool bAgain) {
        for (const ControlNode& child : childrenOf(node)) {
            if (child.bTargetsAttribute) {
                checkAttribute(child, bDissolved, bAgain);
            } else if (isDissolved(child)) {
                writeDissolved(child, bAgain || isLoop(child));
            } else {
                bContent_ = true;
                Writing(problems_).writeChildren(child, false, false);
            }
        }
    }

private:
    void writeDissolved(const ControlNode& node, bool bAgain) {
        if (!node.bHasText) {
            writeChildren(node, true, bAgain);
            return;
        }
        // Its attributes stand before its text, wherever they are.
        for (const ControlNode& child : childrenOf(node))
            if (child.bTargetsAttribute)
                checkAttribute(child, true, bAgain);
        bContent_ = true;
        for (const ControlNode& child : childrenOf(node))
            if (!child.bTargetsAttribute && isDissolved(child))
                writeDissolved(child, bAgain || isLoop(child));
            else if (!child.bTargetsAttribute)
                Writing(problems_).writeChildren(child, false, false);
    }

    void checkAttribute(const ControlNode& attribute, bool bDissolved, bool bAgain) {
        const auto fail = [&](const char* sWhat) {
            problems_.push_back({attribute.oNode, "Name=\"" + attribute.sTagName + "\": " + sWhat});
        };
        if (bDissolved && bContent_)
            fail("the attribute would follow content of its element; put its node before what writes that");
        else if (bDissolved && (bAgain || attribute.attributeName == AttributeName::Taken))
            fail("its element would get the attribute twice; leave one of them out");
    }

    std::vector<SecondProblem>& problems_;
    bool bContent_ = false; ///< the element has content by now
};

} // namespace

void checkDissolvedAttributes(const ControlNode& root, std::vector<SecondProblem>& problems) {
    Writing(problems).writeChildren(root, false, false);
}

} // namespace halvane
