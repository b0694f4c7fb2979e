#pragma once

#include "telling/Console.h"
#include "telling/ControlPlaces.h"
#include "telling/ExportLog.h"
#include "xml/schema/Schema.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane {

/// An error of a document against its schema, so many times.
struct SchemaError {
    std::uint64_t lDocumentLine = 0;       ///< of the first
    std::uint32_t lLine = 0;               ///< of the control file: the node that wrote the element; 0: none
    std::string sElement;                  ///< the control element's own name
    std::string sName;                     ///< of what it writes
    std::string sPart;                     ///< of the control file in which it stands; "": the file itself
    std::vector<std::uint32_t> otherLines; ///< of other nodes that may have written it
    std::string sMessage;
    std::uint64_t lCount = 0;
};

/// Sums up the errors of a document against its schema, by control node and message: however many there are,
/// they take the room of a few messages a node.
class SchemaErrors final : public dom::SchemaListener {
public:
    /// @param oControlRoot borrowed, with its document.
    /// @param log of the export that wrote the document.
    SchemaErrors(dom::Node oControlRoot, const ExportLog& log);

    void elementBegins(std::string_view sName) noexcept override;
    void elementEnds() noexcept override;
    void schemaError(std::uint64_t nLine, std::string_view sAttribute,
                     std::string_view sMessage) noexcept override;

    /// In the order in which they were met first.
    [[nodiscard]] const std::vector<SchemaError>& errors() const noexcept { return errors_; }
    [[nodiscard]] std::uint64_t count() const noexcept { return lCount_; }

private:
    void add(std::uint64_t nLine, std::string_view sAttribute, std::string_view sMessage);

    ControlPlaces places_;
    std::vector<SchemaError> errors_;
    std::unordered_map<const dom::NodeData*, std::vector<std::size_t>> ofNode_; ///< indexes of its errors
    std::uint64_t lCount_ = 0;
};

struct SchemaListing {
    std::string sDocument; ///< as the person names it
    std::string sControl;  ///< the control file as the person typed it
};

/// One error, with its place in the document and the node that wrote it.
[[nodiscard]] std::string schemaErrorLine(const SchemaError& error, const SchemaListing& listing);
/// Where the element comes from: "written by "Zone" of control.xml:12"; "" where that is not known.
[[nodiscard]] std::string writerOf(const SchemaError& error, std::string_view sControl);
/// The errors on a terminal. Long lists are cut.
void listOnConsole(const SchemaErrors& errors, const SchemaListing& listing, const Console& console);

} // namespace halvane
