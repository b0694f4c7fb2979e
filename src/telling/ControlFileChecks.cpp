#include "telling/ControlFileChecks.h"

#include "base/Redaction.h"
#include "base/Text.h"
#include "engine/second/ControlParts.h"
#include "engine/second/SecondControl.h"
#include "telling/DocumentLoading.h"
#include "telling/DocumentOrder.h"
#include "telling/PrefixChecks.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace halvane {

namespace {

bool isText(dom::Node oNode) {
    return oNode.nodeType() == dom::NodeType::Text || oNode.nodeType() == dom::NodeType::CDataSection ||
           oNode.nodeType() == dom::NodeType::EntityReference;
}

bool isBlank(std::string_view sText) {
    return sText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

class Inspection {
public:
    /// @param pSecondEdition nothing: there is the first edition alone.
    Inspection(dom::Node oRoot, const SecondEdition* pSecondEdition, std::size_t nMost)
        : oRoot_(oRoot), pSecondEdition_(isOfSecondEdition(oRoot) ? pSecondEdition : nullptr), nMost_(nMost),
          prefixes_(oRoot) {
        const auto undeclared = pSecondEdition == nullptr ? std::nullopt : undeclaredEdition(oRoot);
        if (undeclared)
            add(problemOf(*undeclared, "SecondEdition"));
    }

    void inspectTree() {
        for (dom::Node oNode = oRoot_; oNode && problems_.size() < nMost_;
             oNode = nextInDocument(oNode, oRoot_))
            inspect(oNode);
        if (pSecondEdition_ != nullptr && problems_.empty())
            for (const auto& problem : checkSecondEdition(oRoot_, *pSecondEdition_))
                if (problems_.size() < nMost_)
                    add(problemOf(problem, "SecondEdition"));
    }

    [[nodiscard]] std::vector<ControlProblem> takeProblems() { return std::move(problems_); }

private:
    void inspect(dom::Node oNode) {
        if (isElement(oNode))
            inspectName(oNode);
        else if (isText(oNode))
            refuseText(oNode);
    }

    void inspectName(dom::Node oElement) {
        const std::string_view sGiven = oElement.getAttribute("Name").value_or("");
        if (sGiven.find_first_not_of(' ') == std::string_view::npos) {
            if (mayBeNameless(oElement))
                return;
            refuse("MissingName", oElement,
                   fmt::format("<{}> has no Name; add Name=\"…\", the name of what it writes",
                               oElement.nodeName()));
            return;
        }
        if (isName(sGiven))
            inspectPrefix(oElement);
        else
            refuse("InvalidName", oElement,
                   fmt::format("Name=\"{}\" of <{}> is no name that XML allows; begin with a letter, "
                               "go on with letters, digits, \"-\", \"_\" and \".\"",
                               shortened(sGiven, 40), oElement.nodeName()));
    }

    /// What writes no element of its own needs no name.
    [[nodiscard]] bool mayBeNameless(dom::Node oElement) const {
        if (pSecondEdition_ == nullptr)
            return false;
        for (const dom::Node oAttribute : oElement.attributes())
            if ((oAttribute.baseName() == "Omit" && oAttribute.nodeValue() == "Self") ||
                oAttribute.baseName() == "Include")
                return true;
        return false;
    }

    void inspectPrefix(dom::Node oElement) {
        if (pSecondEdition_ != nullptr)
            return; // its prefixes are those of the control file's own declarations
        const std::string sProblem = prefixes_.problem(oElement);
        if (!sProblem.empty())
            refuse("UndeclaredPrefix", oElement, sProblem);
    }

    /// Without its blanks. Most elements bear the name of another one.
    bool isName(std::string_view sGiven) {
        return names_.contains(sGiven) ||
               (oScratch_->findName(replaceAll(sGiven, " ", "")) != nullptr && names_.insert(sGiven).second);
    }

    void refuseText(dom::Node oText) {
        const std::string_view sText = oText.nodeValue();
        if (isBlank(sText) && oText.nodeType() == dom::NodeType::CDataSection) {
            refuse(sTextKind, oText,
                   "a CDATA section counts as text among the control elements, even of white space; "
                   "remove it");
            return;
        }
        if (isBlank(sText)) {
            refuse(sTextKind, oText,
                   "white space that xml:space=\"preserve\" keeps counts as text among the control "
                   "elements; remove xml:space");
            return;
        }
        const auto lStart = sText.find_first_not_of(" \t\r\n");
        const auto lEnd = sText.find_first_of("\r\n", lStart);
        // The node begins where the tag before it ends; its words may begin lines later.
        const auto lBreaks =
            std::count(sText.begin(), sText.begin() + static_cast<std::ptrdiff_t>(lStart), '\n');
        add({sTextKind, partOf(oText), oText.line() + static_cast<std::uint32_t>(lBreaks), 0,
             fmt::format("text among the control elements (\"{}\"); remove it, or make it a comment",
                         shortened(withoutPasswords(sText.substr(lStart, lEnd - lStart)), 40)),
             oText});
    }

    void refuse(std::string_view sKind, dom::Node oNode, std::string sWhat) {
        add({sKind, partOf(oNode), oNode.line(), 0, std::move(sWhat), oNode});
    }

    void add(ControlProblem problem) {
        if (problems_.size() + 1 == nMost_)
            problem = {{}, {}, 0, 0, "there may be more problems after these", {}};
        problems_.push_back(std::move(problem));
    }

    static constexpr std::string_view sTextKind = "TextAmongElements";

    dom::Node oRoot_;
    const SecondEdition* pSecondEdition_;
    std::size_t nMost_;
    PrefixChecks prefixes_;
    std::vector<ControlProblem> problems_;
    dom::DocumentPtr oScratch_ = dom::Document::create();
    std::unordered_set<std::string_view> names_; ///< that are fit, as they were given
};

} // namespace

std::vector<std::string> checkControlFile(const std::string& sPath, const std::string& sShown,
                                          dom::DocumentPtr& oDocument, const SecondEdition* pSecondEdition) {
    std::vector<std::string> lines;
    oDocument = loadDocument(sPath, sShown, lines);
    if (oDocument == nullptr)
        return lines;
    auto problems = includeParts(oDocument, sPath, pSecondEdition);
    if (problems.empty())
        problems = controlProblems(oDocument, pSecondEdition);
    for (const auto& problem : problems)
        lines.push_back(listed(problem, sShown));
    return lines;
}

std::vector<ControlProblem> controlProblems(const dom::DocumentPtr& oDocument,
                                            const SecondEdition* pSecondEdition, std::size_t nMost) {
    Inspection inspection(oDocument->documentElement(), pSecondEdition, nMost);
    inspection.inspectTree();
    return inspection.takeProblems();
}

} // namespace halvane
