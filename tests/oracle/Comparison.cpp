#include "oracle/Comparison.h"

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/second/ControlParts.h"
#include "oracle/RandomControlFile.h"
#include "oracle/second/RandomSecondEdition.h"

#include <algorithm>
#include <sstream>

namespace halvane::oracle {

namespace {

/// What is wrong in a piece of XML parsers tell in words of their own: some know prefixes, others leave them
/// to the export.
std::string withoutReason(const std::string& sDescription) {
    const std::string sWrong = "the text is not well-formed XML";
    const bool bWrong = sDescription.starts_with(sWrong) ||
                        sDescription.starts_with("in the XML that the text is, nothing declares the prefix");
    return bWrong ? sWrong : sDescription;
}

/// Remembers what an export told, by lines.
class Listener final : public ExportObserver {
public:
    Listener(Outcome& outcome, std::int32_t lCancelAtItem)
        : outcome_(outcome), lCancelAtItem_(lCancelAtItem) {}

    void nodeFailed(dom::Node oControlNode, const Failure& failure) override {
        // Names that are taken are told to the listener alone, and have tests of their own.
        if (failure.number() == static_cast<std::int32_t>(FailureNumber::DuplicateKey))
            return;
        outcome_.aFailures.push_back(
            {failure.number(), withoutReason(failure.description()), lineOf(oControlNode)});
    }
    void nodeNoticed(dom::Node /*oControlNode*/, Notice /*notice*/, std::string_view /*sDetail*/,
                     const Surroundings& /*around*/) override {}
    bool itemWritten(dom::Node oControlNode) override {
        outcome_.aItemLines.push_back(lineOf(oControlNode));
        return ++lItems_ != lCancelAtItem_;
    }
    void documentSaved(std::string_view /*sPath*/, const dom::CharacterRepairs& /*repairs*/) override {}
    void documentNotSaved(std::string_view sReason) override { outcome_.sNotSavedReason = sReason; }

private:
    static std::uint32_t lineOf(dom::Node oNode) { return oNode ? oNode.line() : 0; }

    Outcome& outcome_;
    std::int32_t lCancelAtItem_;
    std::int32_t lItems_ = 0;
};

/// The parts of a case, put where they are included.
class PartsAtHand final : public ControlParts {
public:
    explicit PartsAtHand(ControlPartTexts texts) : texts_(std::move(texts)) {}

    std::vector<SecondProblem> include(dom::Node oControlRoot, std::string_view sControlPath) override {
        if (const auto sPath = secondAttribute(oControlRoot, "Include");
            sPath && !oControlRoot.firstChild()) {
            documents_.push_back(dom::Document::create());
            if (!documents_.back()->loadXML(texts_.at(std::string(*sPath))))
                return {{oControlRoot, "the part is not well-formed"}};
            oControlRoot.appendChild(documents_.back()->documentElement());
        }
        std::vector<SecondProblem> problems;
        for (dom::Node oChild = oControlRoot.firstChild(); oChild; oChild = oChild.nextSibling())
            if (oChild.nodeType() == dom::NodeType::Element)
                for (SecondProblem& problem : include(oChild, sControlPath))
                    problems.push_back(std::move(problem));
        return problems;
    }

private:
    ControlPartTexts texts_;
    std::vector<dom::DocumentPtr> documents_;
};

void giveTags(ExportState& state, const World& world) {
    if (world.setting.aTags.empty())
        return;
    state.oExternalDom = dom::Document::create();
    if (!state.oExternalDom->loadXML(world.sTagDocument))
        throw Failure(FailureNumber::InternalError, "the tag document is not well-formed");
    state.sExternalNodePath = world.sTagPath;
    state.dTagNames = dCollection::create();
    for (const Tag& tag : world.setting.aTags)
        state.dTagNames->Add(upperCase(tag.sAlias), upperCase(tag.sTagName));
}

// ---- Shrinking ----

/// Whether the two still differ in a control file that is heeded at all.
bool differs(Case& testCase, const test::TemporaryFolder& folder) {
    const Outcome actual = exported(testCase, folder);
    return (actual.sFile || testCase.world.setting.pSecondEdition == nullptr) &&
           actual != interpreted(testCase);
}

/// The nodes below the root and their parents, the last first.
void collect(ControlNode& node, std::vector<std::pair<ControlNode*, std::size_t>>& aPlaces) {
    for (std::size_t n = node.aChildren.size(); n-- > 0;) {
        aPlaces.emplace_back(&node, n);
        collect(node.aChildren[n], aPlaces);
    }
}

/// @returns whether a node could be dropped.
bool dropOneNode(Case& testCase, const test::TemporaryFolder& folder) {
    std::vector<std::pair<ControlNode*, std::size_t>> aPlaces;
    collect(testCase.root, aPlaces);
    for (std::size_t n = 0; n < aPlaces.size(); ++n) {
        const ControlNode whole = testCase.root;
        auto& [pParent, nChild] = aPlaces[n];
        pParent->aChildren.erase(pParent->aChildren.begin() + static_cast<std::ptrdiff_t>(nChild));
        if (differs(testCase, folder))
            return true;
        testCase.root = whole;
        aPlaces.clear();
        collect(testCase.root, aPlaces);
    }
    return false;
}

void forEachNode(ControlNode& node, const std::function<void(ControlNode&)>& visit) {
    visit(node);
    for (ControlNode& child : node.aChildren)
        forEachNode(child, visit);
}

void dropAttributes(Case& testCase, const test::TemporaryFolder& folder) {
    forEachNode(testCase.root, [&](ControlNode& node) {
        for (const auto& [sName, sValue] : std::vector(node.aAttributes)) {
            if (sName.starts_with("xmlns"))
                continue;
            const auto aBefore = node.aAttributes;
            node.set(sName, "");
            if (!differs(testCase, folder))
                node.aAttributes = aBefore;
        }
    });
}

// ---- Telling ----

void tellFailures(std::ostream& out, const char* sTitle, const Outcome& outcome) {
    out << sTitle << '\n';
    for (const ToldFailure& failure : outcome.aFailures)
        out << "  line " << failure.lLine << ": " << failure.lNumber << ' ' << failure.sDescription << '\n';
    out << "  items at lines:";
    for (const std::uint32_t lLine : outcome.aItemLines)
        out << ' ' << lLine;
    out << "\n  error state: " << outcome.lErrorNumber << ' ' << outcome.sErrorMessage
        << "\n  not saved: " << outcome.sNotSavedReason << '\n';
}

/// The text around a byte.
std::string around(const std::string& sText, std::size_t nByte) {
    const std::size_t nFrom = nByte > 150 ? nByte - 150 : 0;
    return sText.substr(nFrom, 300);
}

void tellFirstDifference(std::ostream& out, const Outcome& actual, const Outcome& expected) {
    const std::string sActual = actual.sFile.value_or("(no file)");
    const std::string sExpected = expected.sFile.value_or("(no file)");
    if (sActual == sExpected)
        return;
    const auto places = std::mismatch(sActual.begin(), sActual.end(), sExpected.begin(), sExpected.end());
    const auto nByte = static_cast<std::size_t>(places.first - sActual.begin());
    out << "--- the files differ at byte " << nByte << "\n--- exported:\n"
        << around(sActual, nByte) << "\n--- expected:\n"
        << around(sExpected, nByte) << '\n';
}

} // namespace

namespace {

Case makeCaseOf(Random& random, std::uint64_t nSeed) {
    Case testCase;
    testCase.nSeed = nSeed;
    testCase.world = randomWorld(random);
    testCase.root = randomControlFile(random, testCase.world);
    return testCase;
}

} // namespace

Case makeCase(std::uint64_t nSeed, Texts texts) {
    Random random(nSeed, {1, 1}, texts);
    return makeCaseOf(random, nSeed);
}

Case makeLargeCase(std::uint64_t nSeed) {
    constexpr std::size_t nRepeats = 1'000'000;
    Random random(nSeed, {nRepeats, 1});
    return makeCaseOf(random, nSeed);
}

Case makeCaseOfLargeShapes(std::uint64_t nSeed) {
    constexpr std::size_t nRepeats = 2000;
    Random random(nSeed, {1, nRepeats});
    return makeCaseOf(random, nSeed);
}

Case makeSecondCase(std::uint64_t nSeed, const SecondEdition& edition) {
    const Faults faults = nSeed % 8 == 0 ? Faults::OfRows : Faults::OfShapes;
    Random random(nSeed, {1, 1}, Texts::Utf8, faults, Shapes::Sound);
    Case testCase = makeCaseOf(random, nSeed);
    testCase.world.setting.pSecondEdition = random.chance(97) ? &edition : nullptr;
    addSecondEdition(random, testCase.world, testCase.root);
    return testCase;
}

Outcome exported(Case& testCase, const test::TemporaryFolder& folder) {
    const Setting& setting = testCase.world.setting;
    Outcome outcome;
    Listener listener(outcome, setting.lCancelAtItem);
    ExportState state;
    state.pHost = setting.pHost;
    state.options.lItemLimit = setting.lItemLimit;
    state.options.bIgnoreComments = setting.bIgnoreComments;
    state.options.pObserver = &listener;
    state.pMapDoc = setting.pMapDocument;
    state.pMap = setting.pMapDocument == nullptr ? nullptr : setting.pMapDocument->focusMap();
    giveTags(state, testCase.world);
    ControlPartTexts partTexts;
    state.sControlPath = folder.write("control.xml", writeControlFile(testCase.root, &partTexts));
    PartsAtHand parts(std::move(partTexts));
    std::optional<SecondEdition> edition;
    if (setting.pSecondEdition != nullptr) {
        edition.emplace(*setting.pSecondEdition).pParts = &parts;
        state.options.pSecondEdition = &*edition;
    }
    state.sOutputPath = folder.file("out.xml");
    std::filesystem::remove(state.sOutputPath);
    ExportEntry(state);
    outcome.sFile = folder.read("out.xml");
    outcome.lErrorNumber = state.lModErrNum;
    outcome.sErrorMessage = withoutReason(state.sModErrMsg);
    return outcome;
}

Outcome interpreted(Case& testCase, Reach* pReach) {
    (void)writeControlFile(testCase.root); // tells the nodes their lines
    Interpreter interpreter(testCase.world.setting);
    Outcome outcome = interpreter.run(testCase.root);
    if (pReach != nullptr)
        *pReach = interpreter.reach();
    return outcome;
}

void shrink(Case& testCase, const test::TemporaryFolder& folder) {
    while (dropOneNode(testCase, folder)) {
    }
    dropAttributes(testCase, folder);
    (void)writeControlFile(testCase.root);
}

std::string describeDifference(Case& testCase, const Outcome& actual, const Outcome& expected) {
    std::ostringstream out;
    ControlPartTexts parts;
    const std::string sControl = writeControlFile(testCase.root, &parts);
    out << "seed " << testCase.nSeed << ", item limit " << testCase.world.setting.lItemLimit
        << (testCase.world.setting.bIgnoreComments ? ", comments ignored" : "") << '\n'
        << sControl;
    for (const auto& [sPath, sText] : parts)
        out << "--- " << sPath << ":\n" << sText;
    tellFirstDifference(out, actual, expected);
    tellFailures(out, "--- told by the export:", actual);
    tellFailures(out, "--- expected:", expected);
    return out.str();
}

} // namespace halvane::oracle
