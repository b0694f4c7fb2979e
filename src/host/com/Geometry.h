#pragma once

#include "host/Geometry.h"
#include "host/com/HostObject.h"

namespace halvane::host::com {

class ComPoint final : public GisPoint, public HostObject {
public:
    ComPoint(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindPoint, std::move(pDispatch)) {}

    [[nodiscard]] double x() const override { return object().number("X"); }
    [[nodiscard]] double y() const override { return object().number("Y"); }
    [[nodiscard]] double z() const override { return object().numberIfAny("Z"); }
    [[nodiscard]] double m() const override { return object().numberIfAny("M"); }
};

class ComGeometry final : public GisGeometry, public HostObject {
public:
    ComGeometry(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
        : HostObject(std::move(pContext), kindGeometry, std::move(pDispatch)) {}

    [[nodiscard]] std::int32_t geometryType() const override { return object().integer("GeometryType"); }
    [[nodiscard]] double length() const override { return object().number("Length"); }
    [[nodiscard]] GisPointPtr fromPoint() const override { return roleOf<ComPoint>(object(), "FromPoint"); }
    [[nodiscard]] GisPointPtr toPoint() const override { return roleOf<ComPoint>(object(), "ToPoint"); }
    [[nodiscard]] std::int32_t partCount() const override { return object().integer("PartCount"); }
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override {
        return object().integer("PointCount", {lPart});
    }
    [[nodiscard]] GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override {
        return roleOf<ComPoint>(object(), "Point", {lPart, lIndex});
    }
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<PointValues> aPoints) const override;
};

} // namespace halvane::host::com
