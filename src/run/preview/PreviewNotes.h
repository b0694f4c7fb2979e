#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace halvane {

/// Something that belongs between two elements: why a node wrote none, or that there are more.
struct PreviewRemark {
    std::size_t nParent = 0; ///< the element that it stands in: its number in document order, from 0
    std::size_t nAfter = 0;  ///< the last element before it
    std::string sPlace;      ///< of the control node: "12", or "part.xml:12"
    std::string sText;
    bool bMore = false; ///< told whether or not explanations are asked for
};

/// What a preview knows of the elements of its document.
struct PreviewNotes {
    struct Element {
        std::string sPlace; ///< of the control node that wrote it
        std::vector<std::string> reasons;
        bool bPart = false; ///< of a value of that node
    };

    std::vector<Element> elements; ///< in document order
    std::vector<PreviewRemark> remarks;
};

} // namespace halvane
