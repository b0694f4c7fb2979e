#include "snapshot/RecordingData.h"

#include <array>

namespace halvane::test {

namespace {

class RecordingPoint final : public RecorderOf<host::GisPoint> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] double x() const override {
        return noted("X", [&] { return host().x(); });
    }
    [[nodiscard]] double y() const override {
        return noted("Y", [&] { return host().y(); });
    }
    [[nodiscard]] double z() const override {
        return noted("Z", [&] { return host().z(); });
    }
    [[nodiscard]] double m() const override {
        return noted("M", [&] { return host().m(); });
    }
};

Json jsonOf(const host::PointValues& point) {
    return {jsonOfNumber(point.dX), jsonOfNumber(point.dY), jsonOfNumber(point.dZ), jsonOfNumber(point.dM)};
}

using Numbers = std::initializer_list<std::pair<const char*, double>>;

/// Files a domain, or its lack, with all its numbers.
void recordDomain(RecordedObject& object, const std::string& sKey, const char* sKind, bool bThere,
                  const Numbers& numbers) {
    if (!bThere) {
        object.answer(sKey, nullptr);
        return;
    }
    RecordedObject& child = object.child(sKey, sKind);
    for (const auto& [sName, dNumber] : numbers)
        child.answer(sName, test::jsonOf(Value(dNumber)));
    object.answer(sKey, child.reference());
}

void recordMeasureDomain(RecordedObject& object, const std::string& sKey,
                         const std::optional<host::MeasureDomain>& found) {
    const host::MeasureDomain domain = found.value_or(host::MeasureDomain());
    recordDomain(object, sKey, "MeasureDomain", found.has_value(),
                 {{"Min", domain.dMin},
                  {"Max", domain.dMax},
                  {"FalseOrigin", domain.dFalseOrigin},
                  {"Scale", domain.dScale}});
}

} // namespace

std::optional<host::XyDomain> RecordingReference::xyDomain() const {
    const auto found = host().xyDomain();
    const host::XyDomain domain = found.value_or(host::XyDomain());
    recordDomain(object(), "XyDomain", "XyDomain", found.has_value(),
                 {{"XMin", domain.dXMin},
                  {"YMin", domain.dYMin},
                  {"XMax", domain.dXMax},
                  {"YMax", domain.dYMax},
                  {"FalseX", domain.dFalseX},
                  {"FalseY", domain.dFalseY},
                  {"Scale", domain.dScale}});
    return found;
}

std::optional<host::MeasureDomain> RecordingReference::zDomain() const {
    const auto found = host().zDomain();
    recordMeasureDomain(object(), "ZDomain", found);
    return found;
}

std::optional<host::MeasureDomain> RecordingReference::mDomain() const {
    const auto found = host().mDomain();
    recordMeasureDomain(object(), "MDomain", found);
    return found;
}

std::int32_t RecordingGeometry::geometryType() const {
    return noted("GeometryType", [&] { return host().geometryType(); });
}

double RecordingGeometry::length() const {
    return noted("Length", [&] { return host().length(); });
}

host::GisPointPtr RecordingGeometry::fromPoint() const {
    return recordObject<RecordingPoint>(object(), "FromPoint", "Point", [&] { return host().fromPoint(); });
}

host::GisPointPtr RecordingGeometry::toPoint() const {
    return recordObject<RecordingPoint>(object(), "ToPoint", "Point", [&] { return host().toPoint(); });
}

std::int32_t RecordingGeometry::partCount() const {
    return noted("PartCount", [&] { return host().partCount(); });
}

std::int32_t RecordingGeometry::pointCount(std::int32_t lPart) const {
    return noted(answerKey("PointCount", {lPart}), [&] { return host().pointCount(lPart); });
}

host::GisPointPtr RecordingGeometry::point(std::int32_t lPart, std::int32_t lIndex) const {
    auto pPoint = host().point(lPart, lIndex);
    object().vertex(lPart, lIndex, jsonOf({pPoint->x(), pPoint->y(), pPoint->z(), pPoint->m()}));
    return pPoint;
}

std::size_t RecordingGeometry::readPoints(std::int32_t lPart, std::int32_t lFirst,
                                          std::span<host::PointValues> aPoints) const {
    const std::size_t nRead = host().readPoints(lPart, lFirst, aPoints);
    for (std::size_t n = 0; n < nRead; ++n)
        object().vertex(lPart, lFirst + static_cast<std::int32_t>(n), jsonOf(aPoints[n]));
    return nRead;
}

std::string RecordingDomain::name() const {
    return noted("Name", [&] { return host().name(); });
}

std::string RecordingDomain::description() const {
    return noted("Description", [&] { return host().description(); });
}

std::int32_t RecordingDomain::fieldType() const {
    return noted("FieldType", [&] { return host().fieldType(); });
}

std::int32_t RecordingDomain::mergePolicy() const {
    return noted("MergePolicy", [&] { return host().mergePolicy(); });
}

std::int32_t RecordingDomain::splitPolicy() const {
    return noted("SplitPolicy", [&] { return host().splitPolicy(); });
}

std::int32_t RecordingDomain::domainType() const {
    return noted("DomainType", [&] { return host().domainType(); });
}

Value RecordingDomain::minValue() const {
    return noted("MinValue", [&] { return host().minValue(); });
}

Value RecordingDomain::maxValue() const {
    return noted("MaxValue", [&] { return host().maxValue(); });
}

std::int32_t RecordingDomain::codeCount() const {
    return noted("CodeCount", [&] { return host().codeCount(); });
}

host::CodedValue RecordingDomain::code(std::int32_t lIndex) const {
    host::CodedValue code = host().code(lIndex);
    object().answer(answerKey("CodeValue", {lIndex}), test::jsonOf(code.vCode));
    object().answer(answerKey("CodeName", {lIndex}), code.sName);
    return code;
}

bool RecordingSubtypes::hasSubtypes() const {
    return noted("HasSubtypes", [&] { return host().hasSubtypes(); });
}

std::string RecordingSubtypes::subtypeFieldName() const {
    return noted("SubtypeFieldName", [&] { return host().subtypeFieldName(); });
}

std::int32_t RecordingSubtypes::defaultSubtypeCode() const {
    return noted("DefaultSubtypeCode", [&] { return host().defaultSubtypeCode(); });
}

std::int32_t RecordingSubtypes::subtypeCount() const {
    const std::int32_t lCount = host().subtypeCount();
    Json codes = Json::array();
    for (std::int32_t i = 0; i < lCount; ++i)
        codes.push_back(host().subtypeCode(i));
    object().answer("SubtypeCodes", {{"list", codes}});
    return lCount;
}

std::int32_t RecordingSubtypes::subtypeCode(std::int32_t lIndex) const {
    static_cast<void>(subtypeCount());
    return host().subtypeCode(lIndex);
}

std::string RecordingSubtypes::subtypeName(std::int32_t lCode) const {
    return noted(answerKey("SubtypeName", {lCode}), [&] { return host().subtypeName(lCode); });
}

host::GisDomainPtr RecordingSubtypes::domain(std::int32_t lCode, std::string_view sFieldName) const {
    return recordObject<RecordingDomain>(object(), answerKey("Domain", {lCode, std::string(sFieldName)}),
                                         "Domain", [&] { return host().domain(lCode, sFieldName); });
}

Value RecordingSubtypes::defaultValue(std::int32_t lCode, std::string_view sFieldName) const {
    return noted(answerKey("DefaultValue", {lCode, std::string(sFieldName)}),
                 [&] { return host().defaultValue(lCode, sFieldName); });
}

std::string RecordingRelationshipClass::name() const {
    return noted("Name", [&] { return host().name(); });
}

std::string RecordingRelationshipClass::forwardPathLabel() const {
    return noted("ForwardPathLabel", [&] { return host().forwardPathLabel(); });
}

std::string RecordingRelationshipClass::backwardPathLabel() const {
    return noted("BackwardPathLabel", [&] { return host().backwardPathLabel(); });
}

std::string RecordingRelationshipClass::featureDatasetName() const {
    return noted("FeatureDatasetName", [&] { return host().featureDatasetName(); });
}

bool RecordingRelationshipClass::isAttributed() const {
    return noted("IsAttributed", [&] { return host().isAttributed(); });
}

bool RecordingRelationshipClass::isComposite() const {
    return noted("IsComposite", [&] { return host().isComposite(); });
}

std::int32_t RecordingRelationshipClass::notification() const {
    return noted("Notification", [&] { return host().notification(); });
}

std::int32_t RecordingRelationshipClass::cardinality() const {
    return noted("Cardinality", [&] { return host().cardinality(); });
}

std::string RecordingRelationshipClass::originClassName() const {
    return noted("OriginClassName", [&] { return host().originClassName(); });
}

std::string RecordingRelationshipClass::destinationClassName() const {
    return noted("DestinationClassName", [&] { return host().destinationClassName(); });
}

std::string RecordingRelationshipClass::originPrimaryKey() const {
    return noted("OriginPrimaryKey", [&] { return host().originPrimaryKey(); });
}

std::string RecordingRelationshipClass::originForeignKey() const {
    return noted("OriginForeignKey", [&] { return host().originForeignKey(); });
}

std::string RecordingRelationshipClass::destinationPrimaryKey() const {
    return noted("DestinationPrimaryKey", [&] { return host().destinationPrimaryKey(); });
}

std::string RecordingRelationshipClass::destinationForeignKey() const {
    return noted("DestinationForeignKey", [&] { return host().destinationForeignKey(); });
}

} // namespace halvane::test
