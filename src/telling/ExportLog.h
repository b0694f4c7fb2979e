#pragma once

#include "engine/ExportObserver.h"
#include "telling/Progress.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace halvane::host {
class DataHost;
}

namespace halvane {

/// What a person needs to know of a control node to find and mend it.
struct ControlNodeFacts {
    std::uint32_t lLine = 0; ///< 0: no control node, but the export's own steps
    std::string sElement;    ///< the control element's own name
    std::string sName;       ///< of what it writes
    std::string sPart;       ///< of the control file in which it stands; "": the file itself
    bool bOwnSource = false; ///< it names a data source of its own rather than inheriting its parent's
    // As inherited.
    std::string sDataFrame;
    std::string sDataSource;
    std::string sIdentity;
    std::string sIdentityValue;
    std::string sDataLocation;
    bool bFieldMeant = false; ///< a leaf that looks for a table, though it seems to name a field of its rows
};

[[nodiscard]] ControlNodeFacts factsOf(dom::Node oControlNode);

/// One thing that happened at a control node, so many times.
struct NodeEvent {
    std::optional<Notice> notice; ///< nothing: a failure
    std::int32_t lNumber = 0;     ///< of the failure
    std::string sText;            ///< the failure's description, or the notice's detail
    std::uint64_t lCount = 0;
    std::string sHint = {}; ///< what the failure is about, or what to do; as it was told first
};

struct NodeRecord {
    ControlNodeFacts facts;
    dom::Node oNode = {};    ///< borrowed
    std::size_t nParent = 0; ///< position of the parent among the control nodes
    std::vector<NodeEvent> events;
};

/// Listens to an export and sums up what it tells, by control node and message. However often a node fails,
/// it takes the room of a few messages.
class ExportLog : public ExportObserver {
public:
    /// By position among the control nodes in document order, from 1; 0 is "no control node".
    using Records = std::map<std::size_t, NodeRecord>;

    /// @param progress borrowed; told of every item.
    explicit ExportLog(Progress& progress) : progress_(progress) {}

    /// Gives the export up once a server of the host is lost. @param host borrowed.
    void watchServersOf(const host::DataHost& host) { pServers_ = &host; }

    void nodeFailed(dom::Node oControlNode, const Failure& failure) override;
    void nodeNoticed(dom::Node oControlNode, Notice notice, std::string_view sDetail,
                     const Surroundings& around) override;
    bool itemWritten(dom::Node oControlNode) override;
    bool goesOn() override;
    void documentSaved(std::string_view sPath, const dom::CharacterRepairs& repairs) override;
    void documentNotDurable(std::string_view sReason) override;
    void documentNotSaved(std::string_view sReason) override;

    [[nodiscard]] const Records& records() const noexcept { return records_; }
    [[nodiscard]] std::uint64_t items() const noexcept { return lItems_; }
    /// Whether a repeated node wrote an item.
    [[nodiscard]] bool wroteItems(dom::Node oControlNode) const {
        return withItems_.contains(oControlNode.data());
    }
    [[nodiscard]] std::uint64_t failures() const noexcept { return lFailures_; }
    [[nodiscard]] bool saved() const noexcept { return bSaved_; }
    /// Where, as the export names it; "" when it was not saved.
    [[nodiscard]] const std::string& savedPath() const noexcept { return sSavedPath_; }
    /// Whether the export was given up because an orderly end was asked for, or a server was lost.
    [[nodiscard]] bool givenUp() const noexcept { return bGivenUp_; }
    /// The server whose loss ended the export; "" for none.
    [[nodiscard]] const std::string& lostServer() const noexcept { return sLostServer_; }
    [[nodiscard]] const dom::CharacterRepairs& repairs() const noexcept { return repairs_; }
    /// Why a loss of power may undo the saving; "" when it cannot.
    [[nodiscard]] const std::string& notDurableReason() const noexcept { return sNotDurableReason_; }
    /// Why nothing was saved; "" when it was, or when nobody told.
    [[nodiscard]] const std::string& notSavedReason() const noexcept { return sNotSavedReason_; }

protected:
    /// Whether an orderly end is asked for; asked after each item.
    [[nodiscard]] virtual bool endRequested();

private:
    /// @param hint tells what the event's hint is; asked for an event that is new.
    template<class Hint>
    void add(dom::Node oControlNode, const NodeEvent& event, const Hint& hint);
    NodeRecord& record(dom::Node oControlNode);
    std::size_t position(dom::Node oControlNode);

    Progress& progress_;
    Records records_;
    std::unordered_map<const dom::NodeData*, std::size_t> positions_;
    std::unordered_set<const dom::NodeData*> withItems_;
    dom::Node oLastItem_;
    std::uint64_t lItems_ = 0;
    std::uint64_t lFailures_ = 0;
    bool bSaved_ = false;
    bool bGivenUp_ = false;
    const host::DataHost* pServers_ = nullptr;
    std::uint64_t lFailuresJudged_ = 0; ///< as many as were told when the servers were asked last
    std::string sLostServer_;
    std::string sSavedPath_;
    dom::CharacterRepairs repairs_;
    std::string sNotDurableReason_;
    std::string sNotSavedReason_;
};

} // namespace halvane
