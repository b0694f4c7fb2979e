#pragma once

#include "telling/ControlFileLint.h"
#include "telling/ControlFileParts.h"
#include "telling/ExportLog.h"
#include "telling/Messages.h"
#include "telling/check/CheckRules.h"
#include "telling/check/SourcePlaces.h"

#include <string>
#include <vector>

namespace halvane {

/// What a check tells of one place of a control file.
struct CheckFinding {
    const CheckRule* pRule = nullptr;
    std::string sPart; ///< of the control file in which it stands; "": the file itself
    SourcePlace place; ///< line 0: the file as a whole
    std::string sElement;
    std::string sName;       ///< of what the control element writes; "" where it is not known
    std::string sDetail;     ///< the attribute, value or name that it is about; "" for none
    Explanation explanation; ///< what is the matter, and what to do
};

/// What is the matter and what to do, in one sentence.
[[nodiscard]] std::string message(const CheckFinding& finding);

/// Collects what the checks and an export tell of a control file, each thing once, with its place.
class CheckFindings {
public:
    /// @param sControlPath as SourcePlaces takes it.
    CheckFindings(dom::Node oControlRoot, const std::string& sControlPath)
        : oRoot_(oControlRoot), places_(oControlRoot, sControlPath) {}

    void add(const ControlProblem& problem);
    void add(const Finding& finding);
    /// @param remedies as an export would tell them.
    void add(const ExportLog& log, const std::vector<Finding>& findings, const Remedies& remedies);
    /// What an export would tell of a node that it did not reach.
    void add(const ControlNodeFacts& facts, dom::Node oNode, const NodeEvent& event,
             const Remedies& remedies);
    /// Whether something of that kind is told of the element.
    [[nodiscard]] bool has(dom::Node oElement, std::string_view sKind) const;
    /// Something about the file as a whole.
    void addOfFile(std::string_view sKind, std::string sText);

    /// In the order of the control file.
    [[nodiscard]] std::vector<CheckFinding> take();

private:
    CheckFinding& addAt(dom::Node oNode, std::string_view sKind, std::string_view sAttribute);

    dom::Node oRoot_;
    SourcePlaces places_;
    std::vector<CheckFinding> findings_;
    std::vector<dom::Node> nodes_; ///< of the findings
};

} // namespace halvane
