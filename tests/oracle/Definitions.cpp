// Domains, relationship classes, fields and subtypes.

#include "base/Text.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <iterator>

namespace halvane::oracle {

namespace {

bool same(std::string_view sLeft, std::string_view sRight) {
    return upperCase(sLeft) == upperCase(sRight);
}

std::string yesNo(bool bYes) {
    return bYes ? "True" : "False";
}

/// The name at a code, counted from lFirst; "" beyond.
std::string nameAt(std::int32_t lCode, std::int32_t lFirst, const std::vector<std::string>& aNames) {
    const auto nIndex = static_cast<std::int64_t>(lCode) - lFirst;
    return nIndex >= 0 && nIndex < std::ssize(aNames) ? aNames[static_cast<std::size_t>(nIndex)] : "";
}

std::string fieldTypeText(std::int32_t lCode) {
    const std::string sName =
        nameAt(lCode, 0,
               {"SmallInteger", "Integer", "Single", "Double", "String", "Date", "OID", "Geometry", "Blob"});
    return sName.empty() ? sName : "vemiFieldType" + sName;
}

} // namespace

std::string Interpreter::shapeTypeText(std::int32_t lCode) {
    const std::string sName =
        lCode == 13 ? "Line" : nameAt(lCode, 1, {"Point", "Multipoint", "Polyline", "Polygon"});
    return sName.empty() ? sName : "vemiGeometry" + sName;
}

// ---- Domains ----

/// The counter counts the properties that children ask for, not the domains.
void Interpreter::exportDomains(Node node, OutputNode* pOut, const Attributes& parentAttributes) {
    procedure(node, [&] {
        const Attributes attributes = merged(node, &parentAttributes);
        const auto pHolder = objectAs<host::GisWorkspaceDomains>(
            resolve(attributes.at("DataSource"), "", "", attributes.at("DataLocation")));
        if (pHolder == nullptr)
            return;
        const auto pDomains = pHolder->domains();
        std::int64_t lCounter = 0;
        OutputNode* pItem = pOut;
        while (const auto pDomain = pDomains->next()) {
            pItem = lCounter > 0 ? itemElement(node, pOut, false) : itemElement(node, pItem, true);
            for (const ControlNode* pChild : childrenOf(node)) {
                exportDomainProperty(*pDomain, *pChild, pItem);
                countItem(lCounter);
            }
            tellItem(node);
        }
    });
}

void Interpreter::exportDomainProperty(const host::GisDomain& domain, Node node, OutputNode* pOut) {
    procedure(node, [&] {
        const std::string sProperty = upperCase(node.get("DataProperty"));
        if (sProperty == "DOMAINCODEDVALUES") {
            if (domain.domainType() == 2)
                exportCodes(domain, node, tree_.append(pOut, newElement(node, node.outputName())));
            return;
        }
        // A bound of coded values is not even left empty.
        if (domain.domainType() == 2 && (sProperty == "DOMAINRANGEMAX" || sProperty == "DOMAINRANGEMIN"))
            return;
        const std::string sValue = domainProperty(domain, sProperty);
        writeChild(node, pOut, sValue);
        noteWritten("WorkspaceDomain", sValue);
    });
}

std::string Interpreter::domainProperty(const host::GisDomain& domain, const std::string& sProperty) {
    if (sProperty == "DOMAINDESCRIPTION")
        return domain.description();
    if (sProperty == "DOMAINFIELDTYPE")
        return fieldTypeText(domain.fieldType());
    if (sProperty == "DOMAINMERGEPOLICY")
        return std::to_string(domain.mergePolicy());
    if (sProperty == "DOMAINSPLITPOLICY")
        return std::to_string(domain.splitPolicy());
    if (sProperty == "DOMAINNAME")
        return domain.name();
    if (sProperty == "DOMAINTYPE") {
        const std::string sName = nameAt(domain.domainType(), 1, {"Range", "CodedValue", "String"});
        return sName.empty() ? sName : "vemiDT" + sName;
    }
    const bool bMax = sProperty == "DOMAINRANGEMAX";
    if ((bMax || sProperty == "DOMAINRANGEMIN") && domain.domainType() == 1)
        return toText(bMax ? domain.maxValue() : domain.minValue());
    return {};
}

/// The value is that of the last known property, across children and codes.
void Interpreter::exportCodes(const host::GisDomain& domain, Node node, OutputNode* pCodes) {
    procedure(node, [&] {
        OutputNode* pCodeElement = nullptr;
        std::string sValue;
        const auto choose = [&](Node from, const host::CodedValue& code) {
            if (same(from.get("DataProperty"), "DomainCodeValue"))
                sValue = toText(code.vCode);
            else if (same(from.get("DataProperty"), "DomainCodeName"))
                sValue = code.sName;
        };
        const auto aChildren = childrenOf(node);
        if (aChildren.empty())
            return;
        std::int64_t lCounter = 0;
        const std::int32_t lCount = domain.codeCount();
        for (std::int32_t i = 0; i < lCount; ++i) {
            const host::CodedValue code = domain.code(i);
            // A failure below is the codes' own, whatever node it happens at.
            for (const ControlNode* pChild : aChildren) {
                if (same(pChild->get("Entries"), "Multiple")) {
                    pCodeElement = tree_.append(pCodes, newElement(*pChild, pChild->outputName()));
                    for (const ControlNode* pPart : childrenOf(*pChild)) {
                        choose(*pPart, code);
                        writeChild(*pPart, pCodeElement, sValue);
                        noteWritten("DomainCodedValues", sValue);
                    }
                    continue;
                }
                choose(*pChild, code);
                if (pChild->targetsAttribute())
                    tree_.setAttribute(pCodes, pChild->outputName(), sValue);
                else
                    tree_.setText(pCodeElement, sValue);
            }
            countItem(lCounter);
        }
    });
}

// ---- Relationship classes ----

void Interpreter::exportRelationships(Node node, OutputNode* pOut, const Attributes& parentAttributes) {
    procedure(node, [&] {
        const Attributes attributes = merged(node, &parentAttributes);
        const auto pClasses = objectAs<host::GisEnumRelationshipClass>(
            resolve(attributes.at("DataSource"), "", "", attributes.at("DataLocation")));
        if (pClasses == nullptr)
            return;
        std::int64_t lCounter = 0;
        OutputNode* pItem = pOut;
        while (const auto pRelationship = pClasses->next()) {
            pItem = lCounter > 0 ? itemElement(node, pOut, false) : itemElement(node, pItem, true);
            for (const ControlNode* pChild : childrenOf(node)) {
                exportRelationshipProperty(*pRelationship, *pChild, pItem);
                countItem(lCounter);
            }
            tellItem(node);
            countItem(lCounter);
        }
    });
}

void Interpreter::exportRelationshipProperty(const host::GisRelationshipClass& relationship, Node node,
                                             OutputNode* pOut) {
    procedure(node, [&] {
        const std::string sProperty = upperCase(node.get("DataProperty"));
        const std::string sValue = relationshipProperty(relationship, sProperty);
        writeChild(node, pOut, sValue);
        noteWritten("Relationship", sValue);
    });
}

std::string Interpreter::relationshipProperty(const host::GisRelationshipClass& relationship,
                                              const std::string& sProperty) {
    if (sProperty == "RELATIONSHIPNAME")
        return relationship.name();
    if (sProperty == "FORWARDPATHLABEL")
        return relationship.forwardPathLabel();
    if (sProperty == "FEATUREDATASET")
        return relationship.featureDatasetName();
    if (sProperty == "ISATTIBUTED")
        return yesNo(relationship.isAttributed());
    if (sProperty == "ISCOMPOSITE")
        return yesNo(relationship.isComposite());
    if (sProperty == "NOTIFICATION")
        return nameAt(relationship.notification(), 1,
                      {"vemiRelNotificationNone", "vemiRelNotificationForward", "vemiRelNotificationBackward",
                       "vemiRelNotificationBoth"});
    if (sProperty == "BACKWARDPATHLABEL")
        return relationship.backwardPathLabel();
    if (sProperty == "CARDINALITY")
        return nameAt(
            relationship.cardinality(), 1,
            {"vemiRelCardinalityOneToOne", "vemiRelCardinalityOneToMany", "vemiRelCardinalityManyToMany"});
    if (sProperty == "DESTINATIONCLASSNAME")
        return relationship.destinationClassName();
    if (sProperty == "ORIGINCLASSNAME")
        return relationship.originClassName();
    if (sProperty == "DESTINATIONFOREIGNKEY")
        return relationship.destinationForeignKey();
    if (sProperty == "DESTINATIONPRIMARYKEY")
        return relationship.destinationPrimaryKey();
    if (sProperty == "ORIGINFOREIGNKEY")
        return relationship.originForeignKey();
    if (sProperty == "ORIGINPRIMARYKEY")
        return relationship.originPrimaryKey();
    return {};
}

// ---- Fields ----

/// For each child, one element a field.
void Interpreter::exportFields(const host::GisFeatureClassPtr& pClass, Node node, OutputNode* pOut) {
    procedure(node, [&] {
        if (node.get("Entries") != "Multiple")
            return;
        for (const ControlNode* pChild : childrenOf(node)) {
            const auto pFields = pClass->fields();
            for (std::int32_t i = 0; i < pFields->count(); ++i) {
                if (!omits(node, "Empty") && !omits(node, "Self"))
                    tree_.reveal(pOut);
                OutputNode* pElement = nullptr;
                try {
                    pElement = outputForChild(*pChild, pOut);
                } catch (const ChildFailure& failure) {
                    throw Failure(failure.failure); // here it is the repeated node's own
                }
                for (const ControlNode* pProperty : childrenOf(*pChild))
                    exportFieldProperty(pFields->field(i), *pProperty, pElement);
                tellItem(node);
            }
        }
    });
}

void Interpreter::exportFieldProperty(const host::GisField& field, Node node, OutputNode* pOut) {
    procedure(node, [&] {
        const std::string sProperty = upperCase(node.get("DataProperty"));
        const std::string sValue = fieldProperty(field, sProperty, pClass_);
        writeChild(node, pOut, sValue);
        noteWritten("Field", sValue);
    });
}

std::string Interpreter::fieldProperty(const host::GisField& field, const std::string& sProperty,
                                       const host::GisFeatureClassPtr& pClass) {
    if (sProperty == "FIELDNAME")
        return std::string(field.name());
    if (sProperty == "FIELDISNULL")
        return yesNo(field.isNullable());
    if (sProperty == "FIELDLENGTH")
        return std::to_string(field.length());
    if (sProperty == "FIELDPRECISION")
        return std::to_string(field.precision());
    if (sProperty == "FIELDEDITABLE")
        return yesNo(field.isEditable());
    if (sProperty == "FIELDALIAS")
        return std::string(field.aliasName());
    if (sProperty != "FIELDTYPE")
        return {};
    if (field.typeCode() != 7)
        return fieldTypeText(field.typeCode());
    if (pClass == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return shapeTypeText(pClass->shapeType());
}

// ---- Subtypes ----

void Interpreter::exportSubtypes(const host::GisFeatureClassPtr& pClass,
                                 const host::GisSubtypesPtr& pSubtypes, Node node, OutputNode* pOut,
                                 const Attributes& parentAttributes, SubtypeState& shared) {
    procedure(node, [&] {
        if (pSubtypes == nullptr || !pSubtypes->hasSubtypes())
            return;
        const Attributes attributes = merged(node, &parentAttributes);
        const auto aChildren = childrenOf(node);
        const bool bMultiple = node.get("Entries") == "Multiple";
        // Copies keep their prefix in the second edition alone.
        const std::string sItemName = bSecond_ ? pOut->sName : pOut->sName.substr(pOut->sName.find(':') + 1);
        const auto writeItem = [&](std::int64_t& lCounter, const std::function<void()>& select) {
            OutputNode* const pItem =
                lCounter > 0 ? anotherItem(node, pOut, sItemName) : itemElement(node, pOut, true);
            for (const ControlNode* pChild : aChildren) {
                OutputNode* const pTarget = outputForChild(*pChild, pItem);
                select();
                exportSubtypes(pClass, pSubtypes, *pChild, pTarget, attributes, shared);
            }
            tellItem(node);
            if (lCounter >= setting_.lItemLimit)
                throw Failure::of(FailureNumber::Overflow);
            ++lCounter;
        };
        if (aChildren.empty()) {
            writeSubtypeProperty(*pSubtypes, node, pOut, shared);
        } else if (bMultiple && same(attributes.at("DataSource"), "SubType")) {
            for (std::int32_t i = 0; i < pSubtypes->subtypeCount(); ++i) {
                const std::int32_t lCode = pSubtypes->subtypeCode(i);
                if (pSubtypes->subtypeName(lCode).empty())
                    return;
                writeItem(shared.lSubtypes, [&] {
                    shared.lCode = lCode;
                    shared.sField.clear();
                });
            }
        } else if (bMultiple && same(attributes.at("DataSource"), "SubTypeFieldInfo")) {
            const auto pFields = pClass->fields();
            for (std::int32_t i = 0; i < pFields->count(); ++i) {
                const std::string sName = upperCase(pFields->field(i).name());
                if (sName == "SHAPE" || sName == "SHAPE_AREA" || sName == "SHAPE_LENGTH" ||
                    !pFields->field(i).isEditable())
                    continue;
                writeItem(shared.lFields, [&] { shared.sField = sName; });
            }
        } else if (!bMultiple) {
            for (const ControlNode* pChild : aChildren) {
                OutputNode* const pTarget = outputForChild(*pChild, pOut);
                if (pChild->targetsAttribute())
                    continue;
                shared.sField.clear();
                exportSubtypes(pClass, pSubtypes, *pChild, pTarget, attributes, shared);
            }
        }
    });
}

void Interpreter::writeSubtypeProperty(const host::GisSubtypes& subtypes, Node node, OutputNode* pOut,
                                       const SubtypeState& shared) {
    const std::string sProperty = upperCase(node.get("DataProperty"));
    std::string sValue;
    if (sProperty == "SUBTYPEFIELDNAME") {
        sValue = subtypes.subtypeFieldName();
    } else if (sProperty == "DEFAULTSUBTYPECODE") {
        sValue = std::to_string(subtypes.defaultSubtypeCode());
    } else if (sProperty == "SUBTYPENAME") {
        sValue = subtypes.subtypeName(shared.lCode);
    } else if (sProperty == "SUBTYPECODE") {
        sValue = std::to_string(shared.lCode);
    } else if (sProperty == "FIELDNAME") {
        sValue = shared.sField;
    } else if (sProperty == "SUBTYPEDOMAIN") {
        const auto pDomain = subtypes.domain(shared.lCode, shared.sField);
        sValue = pDomain == nullptr ? "" : pDomain->name();
    } else if (sProperty == "SUBTYPEDEFAULTVALUE") {
        sValue = toText(subtypes.defaultValue(shared.lCode, shared.sField));
    }
    if (node.targetsAttribute())
        tree_.fillAttribute(pOut, node.outputName(), sValue);
    else if (omits(node, "Self"))
        tree_.appendText(pOut, sValue);
    else
        tree_.setText(pOut, sValue);
    noteWritten("SubType", sValue);
}

} // namespace halvane::oracle
