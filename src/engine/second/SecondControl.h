#pragma once

#include "engine/control/ControlNode.h"
#include "engine/second/ControlParts.h"
#include "engine/second/DissolvedAttributes.h"
#include "engine/second/Inherited.h"
#include "engine/second/Namespaces.h"
#include "engine/second/SecondEdition.h"
#include "engine/second/SecondNode.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Reads what the elements of a control file say in the second edition, and owns it. The elements are entered
/// and left in document order.
class SecondControl {
public:
    /// @param oOutput the document that output names belong to.
    SecondControl(const SecondEdition& edition, dom::Document& oOutput)
        : edition_(edition), oOutput_(oOutput) {}
    SecondControl(const SecondControl&) = delete;
    SecondControl& operator=(const SecondControl&) = delete;
    ~SecondControl() = default;

    void enterRoot(ControlNode& root);
    /// @param writer the node whose element is around the node's, or has its attribute.
    void enter(ControlNode& node, ControlNode& writer);
    void leave();
    /// All elements were entered and left.
    void finish(const ControlNode& root) { checkDissolvedAttributes(root, problems_); }

    /// In document order.
    [[nodiscard]] const std::vector<SecondProblem>& problems() const noexcept { return problems_; }

private:
    /// What stands around a node, or the node itself, that the leaves in it read.
    struct Around {
        bool bRows = false;           ///< the rows at hand are the second edition's
        bool bItems = false;          ///< a loop over the things of a map
        std::uint32_t nRows = 0;      ///< loops over rows
        std::uint32_t nGroupRows = 0; ///< up to the outermost one over groups, with it; 0: there is none
        bool bRelated = false;        ///< in such a row, a group of related rows of the first edition's form
        bool bPart = false;           ///< the root of an included part stands in it, and nothing else
        bool bProperties = false;     ///< what stands in it writes properties of definitions or points
    };

    [[nodiscard]] SecondNode& secondOf(ControlNode& node);
    void readAttributes(ControlNode& node, bool bRoot);
    void readsAround(ControlNode& node);
    void checkRows(ControlNode& node);
    void checkText(ControlNode& node);
    void scopeOf(SecondNode& node);
    void checkGeometry(ControlNode& node);
    /// What the form of a shape that the node asks for is written with.
    void prepareGeometry(ControlNode& node);
    [[nodiscard]] ElementNames namesOf(const GeometryWord& word) const;
    void declareFor(const ControlNode& node, ControlNode& writer);
    /// @param bAround the writer is an element around the one that was entered last.
    void declareOn(ControlNode& writer, std::string_view sPrefix, std::string_view sAddress, bool bAround);
    void fail(dom::Node oNode, std::string sText) { problems_.push_back({oNode, std::move(sText)}); }

    const SecondEdition& edition_;
    dom::Document& oOutput_;
    std::deque<SecondNode> nodes_;                                    ///< they keep their places
    Namespaces control_;                                              ///< as the control file declares them
    Namespaces written_;                                              ///< as the output declares them
    std::deque<Inherited> inheritances_ = std::deque<Inherited>(1);   ///< they keep their places
    std::vector<const Inherited*> inherited_{&inheritances_.front()}; ///< of the elements entered
    std::vector<Around> around_;                                      ///< of the elements entered
    std::vector<SecondProblem> problems_;
};

/// Whether the node writes no element or attribute of its own.
[[nodiscard]] bool isDissolved(const ControlNode& node) noexcept;

/// Whether its children do not inherit the node's data source.
[[nodiscard]] bool keepsSource(const ControlNode& node) noexcept;

/// The first attribute of the second edition in a control file whose root does not declare its namespace: it
/// would do nothing, without a word. Nothing for control files of either edition.
[[nodiscard]] std::optional<SecondProblem> undeclaredEdition(dom::Node oControlRoot);

/// What makes a control file of the second edition unfit for an export; nothing for one of the first.
[[nodiscard]] std::vector<SecondProblem> checkSecondEdition(dom::Node oControlRoot,
                                                            const SecondEdition& edition);

} // namespace halvane
