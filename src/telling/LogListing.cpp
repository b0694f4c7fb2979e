#include "telling/LogListing.h"

#include "telling/ControlFileParts.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <vector>

namespace halvane {

namespace {

constexpr std::size_t nMostListed = 50; // of failures, and of notices

/// A node without a source of its own looks for its parent's once more, in vain.
bool sharesParentsCause(const NodeRecord& record, const NodeEvent& event, const NodeEvent& parentsEvent) {
    return !record.facts.bOwnSource && event.notice == parentsEvent.notice &&
           event.sText == parentsEvent.sText;
}

/// Without a location there was nothing to open; that the node found nothing is told by itself.
bool isFruitlessLook(const NodeRecord& record, const NodeEvent& event) {
    return event.notice == Notice::WorkspaceNotOpened && record.facts.sDataLocation.empty();
}

/// The control file itself showed that there is no such kind.
bool isToldOfFile(const NodeEvent& event, const std::vector<Finding>& findings) {
    return event.notice == Notice::UnknownKind &&
           std::any_of(findings.begin(), findings.end(),
                       [&](const Finding& finding) { return finding.sDetail == event.sText; });
}

/// Looking for a source more than once is the engine's affair; only events of items are worth a number.
bool isOfItems(const NodeEvent& event) {
    return event.notice != Notice::ResolvedToNothing && event.notice != Notice::WorkspaceNotOpened;
}

/// The host's own text names the data. One reason can cost many nodes their values, and is read once.
bool isReasonOfTheHost(const NodeEvent& event) {
    return !event.notice && event.lNumber == static_cast<std::int32_t>(FailureNumber::HostFailure);
}

class Lines {
public:
    Lines(const ExportLog& log, const std::vector<Finding>& findings, Telling telling) : telling_(telling) {
        for (const auto& [nPosition, record] : log.records()) {
            // What ended the export is told as the reason why nothing was written.
            if (nPosition == 0 && !log.saved())
                continue;
            for (const NodeEvent& event : record.events)
                if (!isFruitlessLook(record, event) && !isToldOfFile(event, findings))
                    add(nPosition, record, event);
        }
    }

    [[nodiscard]] std::vector<ToldEvent> takeAll() { return std::move(lines_); }

private:
    void add(std::size_t nPosition, const NodeRecord& record, const NodeEvent& event) {
        const bool bNothingFound = event.notice == Notice::ResolvedToNothing;
        const auto pParent = bNothingFound ? nothingFound_.find(record.nParent) : nothingFound_.end();
        if (pParent != nothingFound_.end() &&
            sharesParentsCause(record, event, *lines_[pParent->second].pEvent)) {
            ++lines_[pParent->second].nInside;
            nothingFound_.emplace(nPosition, pParent->second);
            return;
        }
        if (bNothingFound)
            nothingFound_.emplace(nPosition, lines_.size());
        if (telling_ == Telling::NodesOnce && !event.notice) {
            const auto [place, bNew] = failed_.emplace(nPosition, lines_.size());
            if (!bNew) {
                lines_[place->second].lOtherwise += event.lCount;
                return;
            }
        }
        if (telling_ == Telling::ReasonsOnce && isReasonOfTheHost(event)) {
            const auto [place, bNew] =
                ofTheHost_.emplace(record.facts.sPart + "\n" + event.sText, lines_.size());
            if (!bNew) {
                lines_[place->second].sameAt.push_back(record.facts.lLine);
                return;
            }
        }
        lines_.push_back({&record, &event});
    }

    Telling telling_;
    std::vector<ToldEvent> lines_;
    std::map<std::size_t, std::size_t> nothingFound_; // line by position of the control node
    std::map<std::size_t, std::size_t> failed_;       // line by position of the control node
    std::map<std::string, std::size_t> ofTheHost_;    // line by what the host told
};

std::string place(const ControlNodeFacts& facts, const std::string& sControl) {
    return facts.lLine == 0 ? sControl : shownLine(sControl, facts.sPart, facts.lLine);
}

/// "14", "14 and 15", "14, 15 and 7 more".
std::string enumerated(const std::vector<std::uint32_t>& numbers) {
    constexpr std::size_t nMost = 5;
    const std::size_t nShown = numbers.size() > nMost + 1 ? nMost : numbers.size() - 1;
    std::string sLast = nShown + 1 == numbers.size() ? std::to_string(numbers.back())
                                                     : fmt::format("{} more", numbers.size() - nShown);
    if (nShown == 0)
        return sLast;
    return fmt::format(
        "{} and {}", fmt::join(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(nShown), ", "),
        sLast);
}

std::string text(const ToldEvent& event, const ListingContext& context) {
    const ControlNodeFacts& facts = event.pRecord->facts;
    std::string sText =
        fmt::format("{}: {}: ", place(facts, context.sControl), event.pEvent->notice ? "note" : "error");
    if (facts.lLine != 0)
        sText += fmt::format("\"{}\": ", facts.sName);
    return sText + explain(facts, *event.pEvent, context.remedies) + additions(event);
}

} // namespace

std::vector<ToldEvent> toldEvents(const ExportLog& log, const std::vector<Finding>& findings,
                                  Telling telling) {
    return Lines(log, findings, telling).takeAll();
}

std::string additions(const ToldEvent& event) {
    std::string sText;
    if (event.pEvent->lCount > 1 && isOfItems(*event.pEvent))
        sText += fmt::format(" ({} times)", event.pEvent->lCount);
    if (event.lOtherwise > 0)
        sText += fmt::format(" ({} more with other messages)", counted(event.lOtherwise, "time"));
    if (event.nInside > 0)
        sText += fmt::format(" (so too {} inside it)", counted(event.nInside, "node"));
    if (!event.sameAt.empty())
        sText += fmt::format(" (so too at line{} {})", event.sameAt.size() == 1 ? "" : "s",
                             enumerated(event.sameAt));
    return sText;
}

std::vector<ListedLine> listing(const ExportLog& log, const ListingContext& context) {
    std::vector<ListedLine> listed;
    for (const ToldEvent& event : toldEvents(log, context.findings))
        listed.push_back({!event.pEvent->notice, text(event, context)});
    return listed;
}

void listOnConsole(const ExportLog& log, const ListingContext& context, const Console& console) {
    std::size_t nErrors = 0;
    std::size_t nNotes = 0;
    for (const ListedLine& line : listing(log, context)) {
        if (line.bFailure && ++nErrors <= nMostListed)
            console.failure(line.sText);
        if (!line.bFailure && ++nNotes <= nMostListed)
            console.note(line.sText);
    }
    if (nErrors > nMostListed)
        console.failure(fmt::format("{}: {} more; --report lists all", context.sControl,
                                    counted(nErrors - nMostListed, "error")));
    if (nNotes > nMostListed)
        console.note(fmt::format("{}: {} more; --report lists all", context.sControl,
                                 counted(nNotes - nMostListed, "note")));
}

void listOnConsole(const std::vector<Finding>& findings, std::string_view sControl, const Console& console) {
    const std::size_t nListed = std::min(findings.size(), nMostListed);
    for (std::size_t i = 0; i < nListed; ++i)
        console.note(listed(findings[i], sControl));
    if (nListed < findings.size())
        console.note(fmt::format("{}: {} more about the file itself; --report lists all", sControl,
                                 counted(findings.size() - nListed, "note")));
}

std::size_t failedNodes(const ExportLog& log) {
    const auto lFailed = std::count_if(log.records().begin(), log.records().end(), [](const auto& entry) {
        return std::any_of(entry.second.events.begin(), entry.second.events.end(),
                           [](const NodeEvent& event) { return !event.notice; });
    });
    return static_cast<std::size_t>(lFailed);
}

} // namespace halvane
