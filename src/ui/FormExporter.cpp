#include "ui/FormExporter.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "component/clsExport.h"

#include <cstdint>
#include <utility>

namespace halvane::ui {

namespace {

constexpr const char* sFirstNodePath = "//VandraConfig/TemplateView/QvLayers/QvLayer";
constexpr std::string_view sControlFilter = "XML Files (.xml)|*.xml";
// A description with no pattern, on purpose: any file may be the optional document.
constexpr std::string_view sOptionalFilter = "XML Files (.xml)";

/// The hourglass, as long as it lives.
class Hourglass {
public:
    explicit Hourglass(FormView& view) : view_(view) { view_.setMousePointer(MousePointer::Hourglass); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
    ~Hourglass() { view_.setMousePointer(MousePointer::Default); }

private:
    FormView& view_;
};

/// Keeps the form's buttons from doing anything, as long as it lives.
class Busy {
public:
    explicit Busy(bool& bBusy) : bBusy_(bBusy) { bBusy = true; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { bBusy_ = false; }

private:
    bool& bBusy_;
};

} // namespace

FormExporter::FormExporter(FormView& view, ExportOptions options, ExportWatch* pWatch)
    : view_(view), options_(std::move(options)), pWatch_(pWatch) {}

void FormExporter::Load(HostApplicationPtr pApplication) {
    pApplication_ = std::move(pApplication);
    for (const Box box : {Box::Text1, Box::Text2, Box::Text3, Box::Text4})
        view_.setText(box, "");
    view_.setText(Box::Text5, sFirstNodePath);
}

bool FormExporter::Command1_Click() {
    if (bExporting_ || !boxesAreFit())
        return false;
    const Busy busy(bExporting_);
    exportBoxes();
    return true;
}

void FormExporter::Command2_Click() {
    if (!bExporting_)
        view_.Unload();
}

void FormExporter::Command3_Click() {
    browseForFile(Box::Text1, sControlFilter);
}

void FormExporter::Command4_Click() {
    if (bExporting_)
        return;
    const auto item = view_.Browse("Select Output Path");
    if (!item)
        return;
    if (!item->bFolder)
        view_.MsgBox("Please select a file directory.");
    else
        view_.setText(Box::Text2, item->sPath);
}

void FormExporter::Command5_Click() {
    browseForFile(Box::Text4, sOptionalFilter);
}

void FormExporter::browseForFile(Box box, std::string_view sFilter) {
    if (bExporting_)
        return;
    if (const auto sPath = view_.ShowOpen(sFilter))
        view_.setText(box, *sPath);
}

std::string FormExporter::trimmed(Box box) const {
    return std::string(trimBlanks(view_.text(box)));
}

bool FormExporter::boxesAreFit() {
    if (trimmed(Box::Text1).empty())
        return refuse(Box::Text1, "Please select the control XML file.");
    if (trimmed(Box::Text2).empty())
        return refuse(Box::Text2, "Please select the output path.");
    if (trimmed(Box::Text3).empty())
        return refuse(Box::Text3, "Please type the output file name.");
    if (view_.text(Box::Text3).find('\\') == std::string::npos)
        return true;
    view_.MsgBox("Invalid output file name.");
    view_.setText(Box::Text3, "");
    view_.setFocusTo(Box::Text3);
    return false;
}

bool FormExporter::refuse(Box box, const std::string& sText) {
    view_.MsgBox(sText);
    view_.setFocusTo(box);
    return false;
}

ExportRequest FormExporter::request() const {
    ExportRequest request{trimmed(Box::Text1), trimmed(Box::Text2), trimmed(Box::Text3), trimmed(Box::Text4),
                          ""};
    if (!request.sOptionalXML.empty())
        request.sNodePath = trimmed(Box::Text5);
    return request;
}

void FormExporter::exportBoxes() {
    const ExportRequest boxes = request();
    ExportObserver* pObserver = pWatch_ == nullptr ? nullptr : pWatch_->exportBegins(boxes);
    const bool bRefused = pWatch_ != nullptr && pObserver == nullptr;
    try {
        const Hourglass hourglass(view_);
        if (!bRefused)
            runExport(boxes, pObserver);
    } catch (...) {
        // Not shown: the form reports no failure of an export.
        if (pObserver != nullptr)
            pObserver->documentNotSaved(currentFailure().description());
    }
    if (pWatch_ == nullptr)
        return;
    pWatch_->exportEnds();
    if (const auto box = bRefused ? pWatch_->refusedBox() : std::nullopt)
        view_.setFocusTo(*box);
}

void FormExporter::runExport(const ExportRequest& request, ExportObserver* pObserver) {
    ExportOptions options = options_;
    options.pObserver = pObserver;
    clsExport exporter(pApplication_->objects(), options);
    const dom::DocumentPtr oOptionalDom =
        request.sOptionalXML.empty() ? nullptr : loadOptionalDocument(request.sOptionalXML);
    std::string SOutXML = request.SOutXML;
    std::int32_t lErrNum = 0;
    std::string sErrMsg;
    exporter.Export2XML(pApplication_->mapDocument(), request.sControlXML, request.sOutPath, SOutXML,
                        oOptionalDom, request.sNodePath, lErrNum, sErrMsg);
}

const dom::DocumentPtr& FormExporter::loadOptionalDocument(const std::string& sPath) {
    if (oOptionalDom_ == nullptr)
        oOptionalDom_ = dom::Document::create();
    oOptionalDom_->load(sPath);
    if (pWatch_ != nullptr)
        pWatch_->optionalDocumentLoaded(oOptionalDom_);
    return oOptionalDom_;
}

} // namespace halvane::ui
