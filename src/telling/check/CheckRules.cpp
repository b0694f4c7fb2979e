#include "telling/check/CheckRules.h"

#include "base/FindRow.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

using enum CheckSeverity;

constexpr std::array rules{
    CheckRule{"AttributeStaysEmpty", Warning, "Target",
              "In a group inside subtypes values go into elements alone."},
    CheckRule{"EmptyItems", Warning, "DataProperty",
              "A repeated Field node writes values for the nodes inside its children alone."},
    CheckRule{"FieldNotFound", Warning, "IdentityValue", "A field that a row lacks has an empty value."},
    CheckRule{"FieldsOfLayer", Warning, "DataSource",
              "A repeated Field node lists the fields of the current layer, never those of a table."},
    CheckRule{"IdentifierWritten", Note, "IdentityValue",
              "OBJECTID and OID stand for the object identifier, whatever attributes the row has."},
    CheckRule{"InvalidName", Error, "Name",
              "The name of an element or attribute follows the rules of XML; an export refuses others."},
    CheckRule{"KeyMissing", Warning, "LinkField", "Rows are related by a field that both tables have."},
    CheckRule{"KeysDiffer", Warning, "Link",
              "In the second edition numbers match as numbers, texts exactly, and never each other."},
    CheckRule{"KeysOfTwoTypes", Warning, "LinkField",
              "In the first edition rows are related by a clause that compares both fields."},
    CheckRule{"LinkValueEndsText", Warning, "LinkField",
              "In the first edition the value that relates rows stands in a clause as it is."},
    CheckRule{"LostShapes", Error, "", "Shapes that cannot be read are left out of the document."},
    CheckRule{"MissingName", Error, "", "Every control node names what it writes; an export refuses others."},
    CheckRule{"MissingPart", Error, "Include", "An export refuses a control file whose parts are not there."},
    CheckRule{"NoCurrentLayer", Warning, "DataSource",
              "A repeated node over what a layer has writes nothing where no layer is current."},
    CheckRule{"NoCurrentTable", Warning, "DataSource",
              "A repeated node over rows writes nothing where no table is current."},
    CheckRule{"NodeFailed", Error, "",
              "A node that fails is left out, and the export ends with exit code 3."},
    CheckRule{"NoLinkField", Warning, "", "Rows are related by the field that LinkField names."},
    CheckRule{"NoNumber", Warning, "DecimalPlace", "A DecimalPlace that is no number counts for nothing."},
    CheckRule{"NoRow", Warning, "IdentityValue",
              "Values of rows are written where a node around goes over rows."},
    CheckRule{"NothingWritten", Error, "", "The export would end without a document."},
    CheckRule{"NotWellFormed", Error, "", "What is not well-formed XML cannot be read."},
    CheckRule{"OnlyRepeated", Warning, "DataSource",
              "This kind gives values inside a repeated node alone; elsewhere nothing is written."},
    CheckRule{"PropertyWithoutValue", Note, "DataProperty", "The property is known and never has a value."},
    CheckRule{"RelationshipNotFollowed", Error, "",
              "An export refuses a relationship class that does not lead from the rows around."},
    CheckRule{"RepeatedAttribute", Warning, "Target",
              "Items are elements: at most the first one becomes the attribute."},
    CheckRule{"RepeatIsSilent", Warning, "Entries", "A repeated node of this kind and form writes nothing."},
    CheckRule{
        "ReplacesParentContent", Warning, "Target",
        "A value of a spatial reference goes into an attribute where DataLocation is \"Attribute\", too; "
        "otherwise it takes the place of what the element around has written."},
    CheckRule{"ResolvedToNothing", Warning, "IdentityValue",
              "What a data source names and the map or location lacks leaves the node without values."},
    CheckRule{"RowsBesideAttribute", Warning, "Target",
              "An attribute holds one related row; further rows become elements."},
    CheckRule{"RowsLackField", Error, "",
              "An export refuses a control file that asks rows for fields that they lack."},
    CheckRule{"SecondEdition", Error, "", "An export refuses what cannot be followed in the second edition."},
    CheckRule{"TextAmongElements", Error, "",
              "A control file has no text of its own; an export refuses one that has."},
    CheckRule{"UndeclaredPrefix", Error, "Name",
              "No parser that knows namespaces reads a document with such a prefix; an export refuses it."},
    CheckRule{"UnheededRepeat", Warning, "Entries",
              "The direct children of a repeated Table or Record node are not repeated themselves."},
    CheckRule{"UnknownAttribute", Warning, "", "What is not read changes nothing in the document."},
    CheckRule{"UnknownKind", Warning, "DataSource", "No value comes from a kind that there is not."},
    CheckRule{"UnknownProperty", Warning, "DataProperty",
              "A property that is none of its kind writes nothing."},
    CheckRule{"UnknownValue", Warning, "", "A keyword that is not known is read as if it were absent."},
    CheckRule{"WorkspaceNotOpened", Warning, "DataLocation",
              "Data that cannot be opened leaves the node without values."},
};

} // namespace

std::span<const CheckRule> checkRules() noexcept {
    return rules;
}

const CheckRule& checkRule(std::string_view sKind) noexcept {
    const CheckRule* const pRule = findRow(rules, sKind, &CheckRule::sKind);
    return pRule != nullptr ? *pRule : *findRow(rules, std::string_view("NodeFailed"), &CheckRule::sKind);
}

std::string idOf(const CheckRule& rule) {
    std::string sId;
    for (const char c : rule.sKind) {
        const bool bCapital = c >= 'A' && c <= 'Z';
        if (bCapital && !sId.empty())
            sId += '-';
        sId += bCapital ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return sId;
}

std::string_view wordOf(CheckSeverity severity) noexcept {
    constexpr std::array<std::string_view, 3> words{"note", "warning", "error"};
    return words[static_cast<std::size_t>(severity)];
}

} // namespace halvane
