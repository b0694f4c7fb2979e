// Filling a document from a file, a URL or a text.

#include "io/FileLocation.h"
#include "io/FileReading.h"
#include "xml/dom/TreeBuilder.h"
#include "xml/dom/TreeEditing.h"

#include <algorithm>

namespace halvane::dom {

namespace {

constexpr std::int32_t stateLoading = 1;
constexpr std::int32_t stateCompleted = 4;

void setReadyState(Document::Impl& document, std::int32_t lState) {
    if (document.lReadyState == lState)
        return;
    document.lReadyState = lState;
    const auto aListeners = document.aListeners; // a listener may disconnect itself
    for (const auto& listener : aListeners)
        listener.second();
}

/// Handles on the old nodes stay good: they are detached, not given back.
void empty(Document::Impl& document) noexcept {
    while (document.documentNode.pFirstChild != nullptr)
        unlink(*document.documentNode.pFirstChild);
    document.changed();
}

ParseError unreadable(const io::ReadProblem& problem) {
    ParseError error;
    error.errorCode =
        static_cast<std::int32_t>(problem.bTooLarge ? LoadError::TooLarge : LoadError::CannotRead);
    error.reason = problem.sReason;
    return error;
}

io::ReadProblem readNamed(const std::string& sName, std::string& sContent) {
    if (io::isHttpUrl(sName))
        return io::readUrl(sName, Document::largestLoaded, sContent);
    return io::readFile(io::pathOfName(sName), Document::largestLoaded, sContent);
}

void parseInto(Document::Impl& document, std::string_view sBytes, bool bUtf8) {
    TreeBuilder builder(document);
    Parsed parsed = parse(sBytes, {document.bValidateOnParse, bUtf8}, builder);
    document.parseError = std::move(parsed.error);
    document.pMirror = std::move(parsed.pMirror);
    document.pMirrorTop = &document.documentNode;
}

void parseLimited(Document::Impl& document, std::string_view sBytes, bool bUtf8) {
    if (sBytes.size() > Document::largestLoaded)
        document.parseError = unreadable({"the text is larger than the largest document", true});
    else
        parseInto(document, sBytes, bUtf8);
}

/// Whatever goes wrong ends in the parse error.
template<class Fill>
bool fillDocument(Document::Impl& document, std::string_view sUrl, Fill&& fill) {
    setReadyState(document, stateLoading);
    empty(document);
    document.parseError = {};
    try {
        fill();
    } catch (...) {
        const Failure failure = currentFailure();
        document.parseError.errorCode = failure.number();
        document.parseError.reason = failure.description();
    }
    document.parseError.url = io::withoutCredentials(sUrl);
    if (document.parseError.errorCode != 0)
        empty(document);
    setReadyState(document, stateCompleted);
    return document.parseError.errorCode == 0;
}

} // namespace

void Document::setValidateOnParse(bool bValidate) noexcept {
    pImpl_->bValidateOnParse = bValidate;
}

bool Document::load(std::string_view sUrl) {
    const std::string sName(sUrl);
    return fillDocument(*pImpl_, sName, [&] {
        std::string sContent;
        if (const auto problem = readNamed(sName, sContent))
            pImpl_->parseError = unreadable(problem);
        else
            parseInto(*pImpl_, sContent, false);
    });
}

bool Document::loadXML(std::string_view sXml) {
    return fillDocument(*pImpl_, {}, [&] { parseLimited(*pImpl_, sXml, true); });
}

bool Document::loadBytes(std::string_view sBytes) {
    return fillDocument(*pImpl_, {}, [&] { parseLimited(*pImpl_, sBytes, false); });
}

// A tree with a root element is only given its breaks, and is taken for parsed: a document that outgrew
// memory has no text to parse, and one whose text a parser would refuse (a prefix that nothing declares) is
// not lost by being saved.
void Document::reloadWithBreaks() {
    pImpl_->sealing.requireWholeSpool();
    if (pImpl_->layout.bBetweenTags)
        return; // they are written with the tags
    if (!documentElement()) {
        breakBetweenTags();
        loadXML(xml());
        return;
    }
    setReadyState(*pImpl_, stateLoading);
    try {
        breakBetweenTags();
    } catch (...) {
        setReadyState(*pImpl_, stateCompleted);
        throw;
    }
    pImpl_->parseError = {};
    setReadyState(*pImpl_, stateCompleted);
}

const ParseError& Document::parseError() const noexcept {
    return pImpl_->parseError;
}

std::int32_t Document::readyState() const noexcept {
    return pImpl_->lReadyState;
}

void Document::onReadyStateChange(std::function<void()> fnChanged) {
    disconnectReadyState(0);
    if (fnChanged)
        pImpl_->aListeners.emplace_back(0, std::move(fnChanged));
}

std::uint64_t Document::connectReadyState(std::function<void()> fnChanged) {
    pImpl_->aListeners.emplace_back(pImpl_->nNextListener, std::move(fnChanged));
    return pImpl_->nNextListener++;
}

void Document::disconnectReadyState(std::uint64_t nConnection) noexcept {
    std::erase_if(pImpl_->aListeners,
                  [nConnection](const Impl::Listener& listener) { return listener.first == nConnection; });
}

} // namespace halvane::dom
