#pragma once

// The map's data seen through recorders: each passes a call on and files the answer.

#include "host/Application.h"
#include "host/Domains.h"
#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/SpatialReference.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "snapshot/Recording.h"

#include <utility>

namespace halvane::test {

/// What every recorder is: a view of a real object with its place in the recording.
template<class Role>
class RecorderOf : public Role {
public:
    RecorderOf(RecordedObject& object, std::shared_ptr<Role> pReal)
        : object_(object), pReal_(std::move(pReal)) {}

    [[nodiscard]] const std::shared_ptr<Role>& real() const { return pReal_; }

protected:
    [[nodiscard]] RecordedObject& object() const { return object_; }
    [[nodiscard]] Role& host() const { return *pReal_; }
    template<class Call>
    auto noted(const std::string& sKey, const Call& call) const {
        return recordValue(object_, sKey, call);
    }

private:
    RecordedObject& object_;
    std::shared_ptr<Role> pReal_;
};

class RecordingReference final : public RecorderOf<host::GisSpatialReference> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::optional<host::XyDomain> xyDomain() const override;
    [[nodiscard]] std::optional<host::MeasureDomain> zDomain() const override;
    [[nodiscard]] std::optional<host::MeasureDomain> mDomain() const override;
    [[nodiscard]] std::string description() const override {
        return noted("Description", [&] { return host().description(); });
    }
    [[nodiscard]] std::string authorityCode() const override {
        return noted("AuthorityCode", [&] { return host().authorityCode(); });
    }
    [[nodiscard]] bool isNorthFirst() const override {
        return noted("IsNorthFirst", [&] { return host().isNorthFirst(); });
    }
    /// Nobody who is served a recording transforms: what is made is not filed.
    [[nodiscard]] host::GisTransformationPtr
    transformationTo(const host::GisSpatialReference& target) const override {
        const auto* const pRecorder = dynamic_cast<const RecordingReference*>(&target);
        return host().transformationTo(pRecorder == nullptr ? target : *pRecorder->real());
    }
};

class RecordingGeometry final : public RecorderOf<host::GisGeometry> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::int32_t geometryType() const override;
    [[nodiscard]] double length() const override;
    [[nodiscard]] host::GisPointPtr fromPoint() const override;
    [[nodiscard]] host::GisPointPtr toPoint() const override;
    [[nodiscard]] std::int32_t partCount() const override;
    [[nodiscard]] host::PartRole partRole(std::int32_t lPart) const override {
        // By automation it follows from these.
        static_cast<void>(geometryType());
        static_cast<void>(partCount());
        return host().partRole(lPart);
    }
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override;
    [[nodiscard]] host::GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override;
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<host::PointValues> aPoints) const override;
};

class RecordingDomain final : public RecorderOf<host::GisDomain> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::int32_t fieldType() const override;
    [[nodiscard]] std::int32_t mergePolicy() const override;
    [[nodiscard]] std::int32_t splitPolicy() const override;
    [[nodiscard]] std::int32_t domainType() const override;
    [[nodiscard]] Value minValue() const override;
    [[nodiscard]] Value maxValue() const override;
    [[nodiscard]] std::int32_t codeCount() const override;
    [[nodiscard]] host::CodedValue code(std::int32_t lIndex) const override;
};

class RecordingSubtypes final : public RecorderOf<host::GisSubtypes> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] bool hasSubtypes() const override;
    [[nodiscard]] std::string subtypeFieldName() const override;
    [[nodiscard]] std::int32_t defaultSubtypeCode() const override;
    [[nodiscard]] std::int32_t subtypeCount() const override;
    [[nodiscard]] std::int32_t subtypeCode(std::int32_t lIndex) const override;
    [[nodiscard]] std::string subtypeName(std::int32_t lCode) const override;
    [[nodiscard]] host::GisDomainPtr domain(std::int32_t lCode, std::string_view sFieldName) const override;
    [[nodiscard]] Value defaultValue(std::int32_t lCode, std::string_view sFieldName) const override;
};

class RecordingRelationshipClass final : public RecorderOf<host::GisRelationshipClass> {
public:
    using RecorderOf::RecorderOf;

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::string forwardPathLabel() const override;
    [[nodiscard]] std::string backwardPathLabel() const override;
    [[nodiscard]] std::string featureDatasetName() const override;
    [[nodiscard]] bool isAttributed() const override;
    [[nodiscard]] bool isComposite() const override;
    [[nodiscard]] std::int32_t notification() const override;
    [[nodiscard]] std::int32_t cardinality() const override;
    [[nodiscard]] std::string originClassName() const override;
    [[nodiscard]] std::string destinationClassName() const override;
    [[nodiscard]] std::string originPrimaryKey() const override;
    [[nodiscard]] std::string originForeignKey() const override;
    [[nodiscard]] std::string destinationPrimaryKey() const override;
    [[nodiscard]] std::string destinationForeignKey() const override;
};

} // namespace halvane::test
