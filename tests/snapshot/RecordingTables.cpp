#include "snapshot/RecordingTables.h"

#include "host/Fields.h"
#include "host/Rows.h"
#include "host/Tables.h"
#include "host/Workspace.h"

namespace halvane::test {

namespace {

class RecordingRow final : public RecorderOf<host::GisRow> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] const host::GisFields& fields() const override { return host().fields(); }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override {
        const std::string sKey = answerKey("Value", {lIndex});
        ValueView view = host().value(lIndex);
        if (const auto* pHeld = std::get_if<ObjectPtr>(&view)) {
            const auto pGeometry = std::dynamic_pointer_cast<host::GisGeometry>(*pHeld);
            return recordObject<RecordingGeometry>(object(), sKey, "Geometry", [&] { return pGeometry; });
        }
        object().answer(sKey, jsonOf(toValue(view)));
        return view;
    }
    [[nodiscard]] std::int64_t objectId() const override {
        return noted("ObjectId", [&] { return host().objectId(); });
    }
    [[nodiscard]] host::GisGeometryPtr shape() const override {
        return recordObject<RecordingGeometry>(object(), "Shape", "Geometry", [&] { return host().shape(); });
    }
};

class RecordingCursor final : public host::GisCursor {
public:
    RecordingCursor(RecordedObject& object, std::string sKey, host::GisCursorPtr pReal)
        : object_(object), sKey_(std::move(sKey)), pReal_(std::move(pReal)) {
        if (object_.answerAt(sKey_).is_null())
            object_.answer(sKey_, {{"list", Json::array()}, {"open", true}});
    }

    [[nodiscard]] host::GisRowPtr nextRow() override {
        auto pRow = pReal_->nextRow();
        Json& answer = object_.answerAt(sKey_);
        if (pRow == nullptr) {
            answer.erase("open");
            return nullptr;
        }
        RecordedObject& row = object_.child(sKey_ + "[" + std::to_string(nNext_) + "]", "Row");
        if (answer["list"].size() == nNext_)
            answer["list"].push_back(row.reference());
        ++nNext_;
        return std::make_shared<RecordingRow>(row, std::move(pRow));
    }

private:
    RecordedObject& object_;
    std::string sKey_;
    host::GisCursorPtr pReal_;
    std::size_t nNext_ = 0;
};

/// An enumeration whose items were all filed when it was asked for.
template<class Interface, class Item>
class RecordingEnumeration final : public Interface {
public:
    explicit RecordingEnumeration(std::vector<std::shared_ptr<Item>> aItems) : aItems_(std::move(aItems)) {}

    [[nodiscard]] auto next() -> decltype(std::declval<Interface&>().next()) override {
        return nNext_ < aItems_.size() ? aItems_[nNext_++] : nullptr;
    }

private:
    std::vector<std::shared_ptr<Item>> aItems_;
    std::size_t nNext_ = 0;
};

/// Files the whole enumeration as a list.
template<class Interface, class Item, class Real>
std::shared_ptr<Interface> recordEnumeration(RecordedObject& object, const std::string& sKey,
                                             std::string_view sKind, const std::shared_ptr<Real>& pReal) {
    std::vector<std::shared_ptr<Item>> aItems;
    Json list = Json::array();
    while (auto pItem = pReal->next()) {
        RecordedObject& child = object.child(sKey + "[" + std::to_string(aItems.size()) + "]", sKind);
        list.push_back(child.reference());
        aItems.push_back(std::make_shared<Item>(child, std::move(pItem)));
    }
    object.answer(sKey, {{"list", list}});
    return std::make_shared<RecordingEnumeration<Interface, Item>>(std::move(aItems));
}

class RecordingWorkspaceDomains final : public RecorderOf<host::GisWorkspaceDomains> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] host::GisEnumDomainPtr domains() const override {
        return recordEnumeration<host::GisEnumDomain, RecordingDomain>(object(), "Domains", "Domain",
                                                                       host().domains());
    }
};

} // namespace

void recordFields(RecordedObject& object, const host::GisFields& fields) {
    Json list = Json::array();
    for (std::int32_t i = 0; i < fields.count(); ++i) {
        const host::GisField& field = fields.field(i);
        RecordedObject& child = object.child("Fields[" + std::to_string(i) + "]", "Field");
        child.answer("Name", std::string(field.name()));
        child.answer("AliasName", std::string(field.aliasName()));
        child.answer("FieldType", field.typeCode());
        child.answer("Length", field.length());
        child.answer("Precision", field.precision());
        child.answer("IsNullable", field.isNullable());
        child.answer("IsEditable", field.isEditable());
        list.push_back(child.reference());
    }
    object.answer("Fields", {{"list", list}});
}

host::GisCursorPtr recordRows(RecordedObject& object, const std::string& sKey, host::GisCursorPtr pReal) {
    return std::make_shared<RecordingCursor>(object, sKey, std::move(pReal));
}

template<class Kind>
std::string RecordingTableOf<Kind>::datasetName() const {
    return this->noted("DatasetName", [&] { return this->host().datasetName(); });
}

template<class Kind>
host::GisFieldsPtr RecordingTableOf<Kind>::fields() const {
    auto pFields = this->host().fields();
    recordFields(this->object(), *pFields);
    return pFields;
}

template<class Kind>
host::GisCursorPtr RecordingTableOf<Kind>::search(const host::GisQueryFilter* pFilter) {
    static_cast<void>(fields());
    const std::string sKey =
        answerKey("Search", {pFilter == nullptr ? std::string() : pFilter->sWhereClause});
    try {
        return recordRows(this->object(), sKey, this->host().search(pFilter));
    } catch (const Failure& failure) {
        this->object().answer(sKey, jsonOf(failure));
        throw;
    }
}

template<class Kind>
host::GisCursorPtr RecordingTableOf<Kind>::searchWithoutShapes() {
    static_cast<void>(fields());
    return recordRows(this->object(), "SearchWithoutShapes", this->host().searchWithoutShapes());
}

template<class Kind>
host::GisWorkspacePtr RecordingTableOf<Kind>::workspace() const {
    return recordObject<RecordingWorkspace>(this->object(), "Workspace", "Workspace",
                                            [&] { return this->host().workspace(); });
}

template class RecordingTableOf<host::GisTable>;
template class RecordingTableOf<host::GisFeatureClass>;

std::int64_t RecordingFeatureClass::featureCount() const {
    return noted("FeatureCount", [&] { return host().featureCount(); });
}

std::int32_t RecordingFeatureClass::shapeType() const {
    return noted("ShapeType", [&] { return host().shapeType(); });
}

host::GisSpatialReferencePtr RecordingFeatureClass::spatialReference() const {
    return recordObject<RecordingReference>(object(), "SpatialReference", "SpatialReference",
                                            [&] { return host().spatialReference(); });
}

host::GisSubtypesPtr RecordingFeatureClass::subtypes() const {
    return recordObject<RecordingSubtypes>(object(), "Subtypes", "Subtypes",
                                           [&] { return host().subtypes(); });
}

std::string RecordingWorkspace::pathName() const {
    return noted("PathName", [&] { return host().pathName(); });
}

std::int32_t RecordingWorkspace::typeCode() const {
    return noted("WorkspaceType", [&] { return host().typeCode(); });
}

host::GisFeatureClassPtr RecordingWorkspace::openFeatureClass(std::string_view sName) {
    return recordObject<RecordingFeatureClass>(object(), answerKey("OpenFeatureClass", {std::string(sName)}),
                                               "FeatureClass",
                                               [&] { return host().openFeatureClass(sName); });
}

host::GisTablePtr RecordingWorkspace::openTable(std::string_view sName) {
    return recordObject<RecordingTable>(object(), answerKey("OpenTable", {std::string(sName)}), "Table",
                                        [&] { return host().openTable(sName); });
}

host::GisEnumRelationshipClassPtr RecordingWorkspace::relationshipClasses() const {
    return recordEnumeration<host::GisEnumRelationshipClass, RecordingRelationshipClass>(
        object(), "RelationshipClasses", "RelationshipClass", host().relationshipClasses());
}

host::GisWorkspaceDomainsPtr RecordingWorkspace::domainsRole() {
    auto pRole = host().domainsRole();
    if (pRole == nullptr) {
        object().answer("Domains", nullptr);
        return nullptr;
    }
    auto pRecorder = std::make_shared<RecordingWorkspaceDomains>(object(), std::move(pRole));
    static_cast<void>(pRecorder->domains());
    return pRecorder;
}

} // namespace halvane::test
