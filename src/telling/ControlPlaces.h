#pragma once

#include "xml/dom/Dom.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace halvane {

/// Which control nodes may have written the elements of a document, found again from the elements' names and
/// order as the document is read: nothing has to be kept of them while it is written.
///
/// A node writes elements of its Name into that of the node around it, in the order of the control file.
/// Where several nodes of one name stand beside each other, all that may have written an element count.
class ControlPlaces {
public:
    /// @param oControlRoot borrowed, with its document.
    /// @param unsure lines of nodes that may not have written what they were to.
    ControlPlaces(dom::Node oControlRoot, std::unordered_set<std::uint32_t> unsure);

    void begin(std::string_view sName);
    void end();
    /// Of the innermost open element, or of an attribute of it, in the order of the control file. Those of
    /// the nearest element around it where no node is named like it: what one value writes may be elements.
    /// Never empty once the document's root has begun.
    [[nodiscard]] std::vector<dom::Node> writers(std::string_view sAttribute = {}) const;

private:
    struct Entry {
        dom::Node oNode;
        std::string sName;
        bool bRepeats = false;
        bool bSure = false;    ///< it writes one element
        std::size_t nNext = 0; ///< of its siblings, the first that may come next
        std::vector<Entry*> children;
        std::vector<Entry*> attributes;
        std::vector<Entry*> unnamed; ///< nodes without an element that write others than they name
    };
    /// A node that may have written an open element, and the first of its children that may come next.
    struct Writer {
        const Entry* pEntry;
        std::size_t nFrom = 0;
        bool bRefuted = false; ///< what came in the element is not its
    };

    Entry& makeEntry(dom::Node oNode);
    void addChildren(Entry& entry, dom::Node oNode, bool bSure);
    bool addMatches(std::string_view sName, bool bTrustSure);
    bool addUnnamed();
    bool addMatchesOf(std::size_t nWriter, std::string_view sName, bool bTrustSure);

    std::unordered_set<std::uint32_t> unsure_;
    std::deque<Entry> entries_;
    Entry top_;
    std::vector<Writer> writers_; ///< of the open elements, the innermost last
    std::vector<std::size_t>
        begins_; ///< of each open element's among them; what no node is named like has none
};

} // namespace halvane
