#include "component/com/ExportObject.h"

#include "collection/Text.h"
#include "collection/com/Bstr.h"
#include "component/clsExport.h"
#include "component/com/CallerDocument.h"
#include "component/com/CollectionObject.h"
#include "component/com/DualObject.h"
#include "component/com/ExportTurn.h"
#include "host/com/ComHost.h"

#include <msxml2.h>

namespace halvane::server {

namespace {

/// A number or text that a client passes by reference; it may pass none.
struct ErrorResults {
    LONG* pNumber;
    BSTR* psMessage;
};

void replaceText(BSTR* psKept, std::string_view sNew) {
    if (psKept == nullptr || com::utf8Of(*psKept) == sNew)
        return;
    const com::Bstr old = com::Bstr::attach(*psKept);
    *psKept = com::Bstr(sNew).detach();
}

void report(const Failure& failure, const ErrorResults& results) {
    if (results.pNumber != nullptr)
        *results.pNumber = failure.number();
    replaceText(results.psMessage, failure.description());
}

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

class ExportObject final : public DualObject<_clsExport> {
public:
    ExportObject() : DualObject("Halvane.clsExport") {}

    HRESULT STDMETHODCALLTYPE Export2XML(IDispatch* pDunvelDoc, BSTR sControlXML, BSTR sOutPath,
                                         BSTR* SOutXML, IXMLDOMDocument* oXMLDom, BSTR sNodePath,
                                         LONG* lErrNum, BSTR* sErrMsg) override {
        const ErrorResults results{lErrNum, sErrMsg};
        return guarded([&] {
            try {
                exportDocument(pDunvelDoc, sControlXML, sOutPath, SOutXML, oXMLDom, sNodePath, results);
            } catch (...) {
                report(currentFailure(), results);
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

private:
    static void exportDocument(IDispatch* pDunvelDoc, BSTR sControlXML, BSTR sOutPath, BSTR* SOutXML,
                               IXMLDOMDocument* oXMLDom, BSTR sNodePath, const ErrorResults& results) {
        const ExportTurn turn;
        const auto pMapDocument = pDunvelDoc == nullptr ? nullptr : host::com::mapDocumentOf(*pDunvelDoc);
        const std::string sPath = com::utf8Of(sNodePath);
        std::string sOutXml = SOutXML == nullptr ? std::string() : com::utf8Of(*SOutXML);
        std::int32_t lNumber = results.pNumber == nullptr ? 0 : std::int32_t{*results.pNumber};
        std::string sMessage = results.psMessage == nullptr ? std::string() : com::utf8Of(*results.psMessage);
        clsExport exporter(host::com::makeHost(pDunvelDoc));
        exporter.Export2XML(pMapDocument, com::utf8Of(sControlXML), com::utf8Of(sOutPath), sOutXml,
                            tagDocumentOf(oXMLDom, sPath), sPath, lNumber, sMessage);
        replaceText(SOutXML, sOutXml);
        if (results.pNumber != nullptr)
            *results.pNumber = lNumber;
        replaceText(results.psMessage, sMessage);
    }
};

} // namespace

com::ComPtr<_clsExport> makeExportObject() {
    return makeObject<ExportObject>().query<_clsExport>();
}

} // namespace halvane::server
