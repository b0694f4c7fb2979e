#include "component/com/ExportObject.h"

#include "base/Text.h"
#include "base/com/Bstr.h"
#include "component/clsExport.h"
#include "component/com/CallerDocument.h"
#include "component/com/CollectionObject.h"
#include "component/com/DualObject.h"
#include "component/com/ExportTurn.h"
#include "host/com/ComHost.h"

#include <msxml2.h>

#include <limits>

namespace halvane::server {

namespace {

/// A number or text that a client passes by reference; it may pass none.
struct ErrorResults {
    LONG* pNumber;
    BSTR* psMessage;
};

/// The new text is made while the old one lives: its address is another one.
void replaceText(BSTR* psKept, std::string_view sNew) {
    if (psKept == nullptr)
        return;
    com::Bstr sText(sNew);
    const com::Bstr old = com::Bstr::attach(*psKept);
    *psKept = sText.detach();
}

void report(std::int32_t lNumber, std::string_view sMessage, const ErrorResults& results) {
    if (results.pNumber != nullptr)
        *results.pNumber = lNumber;
    replaceText(results.psMessage, sMessage);
}

/// No failure has this number: it stays where an export tells nothing.
constexpr std::int32_t lNothingTold = std::numeric_limits<std::int32_t>::min();

/// An unreadable document yields no tag names, as a document without the nodes does.
dom::DocumentPtr tagDocumentOf(IXMLDOMDocument* oDocument, std::string_view sNodePath) {
    if (oDocument == nullptr)
        return nullptr;
    if (trimBlanks(sNodePath).empty())
        return dom::Document::create(); // nobody will look into it
    try {
        return presentContentOf(oDocument);
    } catch (const Failure&) {
        return dom::Document::create();
    }
}

class ExportObject final : public PublicObject<_clsExport, ::clsExport> {
public:
    ExportObject() : PublicObject("Halvane.clsExport") {}

    HRESULT STDMETHODCALLTYPE Export2XML(IDispatch* pDunvelDoc, BSTR sControlXML, BSTR sOutPath,
                                         BSTR* SOutXML, IXMLDOMDocument* oXMLDom, BSTR sNodePath,
                                         LONG* lErrNum, BSTR* sErrMsg) override {
        const ErrorResults results{lErrNum, sErrMsg};
        return guarded([&] {
            try {
                exportDocument(pDunvelDoc, sControlXML, sOutPath, SOutXML, oXMLDom, sNodePath, results);
            } catch (...) {
                const Failure failure = currentFailure();
                report(failure.number(), failure.description(), results);
            }
        });
    }

    HRESULT STDMETHODCALLTYPE GetTagNames(IXMLDOMDocument* oXMLDom, BSTR sNodePath,
                                          _dCollection** dTagNames) override {
        if (dTagNames == nullptr)
            return E_POINTER;
        *dTagNames = nullptr;
        return guarded([&] {
            const std::string sPath = com::utf8Of(sNodePath);
            clsExport exporter(nullptr);
            *dTagNames =
                makeCollectionObject(exporter.GetTagNames(tagDocumentOf(oXMLDom, sPath), sPath)).detach();
        });
    }

    HRESULT STDMETHODCALLTYPE GetNodesByName(BSTR sNodeName, IXMLDOMDocument* oDomIn,
                                             IXMLDOMNodeList** oNodes) override {
        if (oNodes == nullptr)
            return E_POINTER;
        *oNodes = nullptr;
        if (oDomIn != nullptr && FAILED(oDomIn->getElementsByTagName(sNodeName, oNodes)))
            *oNodes = nullptr; // a failure yields no list
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE ShowExportGUI() override { return S_OK; }

protected:
    /// SOutXML of Export2XML.
    MemberTraits traitsOf(DISPID lMember) const override {
        return lMember == 1 ? MemberTraits{.readText = 3} : MemberTraits{};
    }

private:
    static void exportDocument(IDispatch* pDunvelDoc, BSTR sControlXML, BSTR sOutPath, BSTR* SOutXML,
                               IXMLDOMDocument* oXMLDom, BSTR sNodePath, const ErrorResults& results) {
        const ExportTurn turn;
        const auto pMapDocument = pDunvelDoc == nullptr ? nullptr : host::com::mapDocumentOf(*pDunvelDoc);
        const std::string sPath = com::utf8Of(sNodePath);
        const std::string sGivenName = SOutXML == nullptr ? std::string() : com::utf8Of(*SOutXML);
        std::string sOutXml = sGivenName;
        std::int32_t lNumber = lNothingTold;
        std::string sMessage;
        clsExport exporter(host::com::makeHost(pDunvelDoc));
        exporter.Export2XML(pMapDocument, com::utf8Of(sControlXML), com::utf8Of(sOutPath), sOutXml,
                            tagDocumentOf(oXMLDom, sPath), sPath, lNumber, sMessage);
        if (sOutXml != sGivenName)
            replaceText(SOutXML, sOutXml);
        if (lNumber != lNothingTold)
            report(lNumber, sMessage, results);
    }
};

} // namespace

com::ComPtr<_clsExport> makeExportObject() {
    return com::makeObject<ExportObject>().query<_clsExport>();
}

} // namespace halvane::server
