#include "xml/dom/Escaping.h"

#include "xml/dom/Characters.h"

#include <array>
#include <cstdint>

namespace halvane::dom {

namespace {

/// What to do with a byte that begins a character.
enum class Action : std::uint8_t { Copy, Check, Ampersand, Less, Greater, Quote, Tab, LineFeed, Return };

constexpr std::array<std::string_view, 9> escapes{"",       "",     "&amp;", "&lt;", "&gt;",
                                                  "&quot;", "&#9;", "&#10;", "&#13;"};

using ActionTable = std::array<Action, 256>;

constexpr ActionTable rawTable() {
    ActionTable aTable{};
    for (std::size_t n = 0; n < aTable.size(); ++n)
        aTable[n] = n < 0x20 || n >= 0x80 ? Action::Check : Action::Copy;
    aTable['\t'] = aTable['\n'] = aTable['\r'] = Action::Copy;
    return aTable;
}

constexpr ActionTable textTable() {
    ActionTable aTable = rawTable();
    aTable['&'] = Action::Ampersand;
    aTable['<'] = Action::Less;
    aTable['>'] = Action::Greater;
    aTable['\r'] = Action::Return;
    return aTable;
}

constexpr ActionTable attributeTable() {
    ActionTable aTable = textTable();
    aTable['"'] = Action::Quote;
    aTable['\t'] = Action::Tab;
    aTable['\n'] = Action::LineFeed;
    return aTable;
}

constexpr ActionTable rawActions = rawTable();
constexpr ActionTable textActions = textTable();
constexpr ActionTable attributeActions = attributeTable();

std::string_view between(const char* pBegin, const char* pEnd) noexcept {
    return {pBegin, static_cast<std::size_t>(pEnd - pBegin)};
}

/// Copies runs of bytes that need nothing in one piece.
bool putData(io::OutputBuffer& out, std::string_view sData, const ActionTable& aActions,
             CharacterRepairs& repairs) {
    const std::uint64_t nBefore = out.position();
    const char* const pEnd = sData.data() + sData.size();
    const char* pRun = sData.data();
    for (const char* p = pRun; p != pEnd;) {
        const Action action = aActions[static_cast<unsigned char>(*p)];
        if (action == Action::Copy) {
            ++p;
            continue;
        }
        DataCharacter character;
        if (action == Action::Check) {
            character = characterOfData(p, pEnd);
            if (character.kind == DataCharacter::Kind::Allowed) {
                p += character.nBytes;
                continue;
            }
        }
        out.put(between(pRun, p));
        if (character.kind == DataCharacter::Kind::Forbidden) {
            ++repairs.dropped;
        } else if (character.kind == DataCharacter::Kind::Invalid) {
            ++repairs.replaced;
            out.put(replacementCharacter);
        } else {
            out.put(escapes[static_cast<std::size_t>(action)]);
        }
        p += character.nBytes;
        pRun = p;
    }
    out.put(between(pRun, pEnd));
    return out.position() != nBefore;
}

} // namespace

bool putText(io::OutputBuffer& out, std::string_view sText, CharacterRepairs& repairs) {
    return putData(out, sText, textActions, repairs);
}

void putAttributeValue(io::OutputBuffer& out, std::string_view sValue, CharacterRepairs& repairs) {
    putData(out, sValue, attributeActions, repairs);
}

void putRaw(io::OutputBuffer& out, std::string_view sData, CharacterRepairs& repairs) {
    putData(out, sData, rawActions, repairs);
}

} // namespace halvane::dom
