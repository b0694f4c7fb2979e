#pragma once

#include "collection/dCollection.h"
#include "engine/ExportOptions.h"
#include "host/Forward.h"
#include "host/IExternalProcessor.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// The system's public face: exports facts about a map document into an XML file, as a control file says.
/// One export at a time per process, on the caller's thread. No operation throws.
class clsExport : public Object {
public:
    /// @param pHost makes the objects that an export opens by itself; also used without a map document.
    explicit clsExport(host::GisHostPtr pHost, ExportOptions options = {});

    [[nodiscard]] std::string_view typeName() const override { return "clsExport"; }

    /// Exports into the file `SOutXML` in the folder `sOutPath`.
    /// @param pDunvelDoc the map document; may be nothing.
    /// @param sControlXML full path of the control file; "" means the one of the export before.
    /// @param sOutPath with or without a trailing "\\".
    /// @param SOutXML gets ".xml" appended unless the letters XML stand anywhere in it, in any case, or the
    ///        options ask for the exact name. A name that the system takes for something else is refused
    ///        before anything is exported.
    /// @param oXMLDom a document whose nodes at `sNodePath` pair tag names with aliases; may be nothing. With
    /// a
    ///        document but a blank path nothing is exported and the two results are left as they are.
    /// @param lErrNum,sErrMsg 0 and "" after an export that ran to its end, whatever failed inside it; else
    /// the
    ///        failure of this procedure's own steps.
    void Export2XML(const host::GisMapDocumentPtr& pDunvelDoc, const std::string& sControlXML,
                    const std::string& sOutPath, std::string& SOutXML, const dom::DocumentPtr& oXMLDom,
                    const std::string& sNodePath, std::int32_t& lErrNum, std::string& sErrMsg);

    /// Upper-cased TagName to upper-cased Alias of the nodes at the path, up to the first that lacks one of
    /// them.
    [[nodiscard]] dCollectionPtr GetTagNames(const dom::DocumentPtr& oXMLDom, std::string_view sNodePath);

    /// All elements of the document with that name; no list without a document.
    [[nodiscard]] dom::NodeList GetNodesByName(std::string_view sNodeName,
                                               const dom::DocumentPtr& oDomIn) const;

    /// Does nothing, on purpose: the dialog is not opened through the component.
    void ShowExportGUI() const noexcept {}

private:
    /// Settles what the export works on. @returns false when there is a document but no path into it.
    /// @throws Failure PathFileAccess for a name that the system takes for something else.
    bool prepare(const host::GisMapDocumentPtr& pDunvelDoc, const std::string& sControlXML,
                 const std::string& sOutPath, std::string& SOutXML, const dom::DocumentPtr& oXMLDom,
                 const std::string& sNodePath);
    /// @returns false when there is a document but no path into it.
    bool takeExternalDocument(const dom::DocumentPtr& oXMLDom, const std::string& sNodePath);
    void collectTagNames(const dom::DocumentPtr& oXMLDom, std::string_view sNodePath,
                         dCollection& dTagNames) const;

    host::GisHostPtr pHost_;
    ExportOptions options_;
    std::int32_t lErrNum_ = 0;
    std::string sErrMsg_;
};

} // namespace halvane
