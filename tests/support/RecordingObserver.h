#pragma once

#include "engine/ExportObserver.h"
#include "engine/control/ClsXMLNode.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane::test {

/// Remembers what an export told.
class RecordingObserver : public ExportObserver {
public:
    struct FailedNode {
        std::string sName;
        std::uint32_t lLine;
        std::int32_t lNumber;
        std::string sDescription;
        std::string sContext;
    };
    struct NoticedNode {
        std::string sName;
        Notice notice;
        std::string sDetail;
    };

    void nodeFailed(dom::Node oControlNode, const Failure& failure) override {
        aFailures.push_back({ClsXMLNode(oControlNode).TagName(), oControlNode ? oControlNode.line() : 0,
                             failure.number(), failure.description(), failure.context()});
    }
    void nodeNoticed(dom::Node oControlNode, Notice notice, std::string_view sDetail,
                     const Surroundings& /*around*/) override {
        aNotices.push_back({ClsXMLNode(oControlNode).TagName(), notice, std::string(sDetail)});
    }
    bool itemWritten(dom::Node /*oControlNode*/) override {
        ++lItems;
        return lItems != lCancelAtItem;
    }
    bool goesOn() override { return ++lVisits != lCancelAtVisit; }
    void documentSaved(std::string_view sPath, const dom::CharacterRepairs& repairsDone) override {
        sSavedPath = std::string(sPath);
        repairs = repairsDone;
    }
    void documentNotSaved(std::string_view sReason) override { sNotSavedReason = std::string(sReason); }

    [[nodiscard]] bool noticed(std::string_view sName, Notice notice) const {
        for (const auto& noticedNode : aNotices) {
            if (noticedNode.sName == sName && noticedNode.notice == notice)
                return true;
        }
        return false;
    }

    std::vector<FailedNode> aFailures;
    std::vector<NoticedNode> aNotices;
    int lItems = 0;
    int lCancelAtItem = -1;
    int lVisits = 0;
    int lCancelAtVisit = -1;
    std::optional<std::string> sSavedPath;
    std::optional<std::string> sNotSavedReason;
    dom::CharacterRepairs repairs;
};

} // namespace halvane::test
