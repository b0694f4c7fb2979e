#include "host/gdal/objects/Services.h"

#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "host/Workspace.h"

#include <algorithm>
#include <ctime>

namespace halvane::host::gdal {

void GdalPropertySet::setProperty(std::string_view sName, const Value& vValue) {
    values_.insert_or_assign(upperCase(sName), vValue);
}

Value GdalPropertySet::property(std::string_view sName) const {
    const auto pFound = values_.find(upperCase(sName));
    return pFound == values_.end() ? Value(Empty{}) : pFound->second;
}

GisWorkspacePtr GdalWorkspaceFactory::open(const GisPropertySet& properties, std::int32_t /*lWindowHandle*/) {
    return pEnvironment_->openWorkspace(toText(properties.property("DATABASE")));
}

GisWorkspacePtr GdalWorkspaceFactory::openFromFile(std::string_view sPath, std::int32_t /*lWindowHandle*/) {
    if (kind_ == WorkspaceFactoryKind::RemoteDatabase) {
        throw Failure(FailureNumber::HostFailure,
                      "Connection files are not read here; name the database in a <Connection> of the map "
                      "document");
    }
    return pEnvironment_->openWorkspace(sPath);
}

std::string GdalNumericFormat::valueToText(double dValue) const {
    std::string sText;
    appendValue(sText, dValue);
    return sText;
}

void GdalNumericFormat::appendValue(std::string& sText, double dValue) const {
    if (!lDecimals_)
        throw Failure(FailureNumber::InvalidProcedureCall, "The number format has not been configured");
    appendFixedText(sText, dValue, std::max<std::int32_t>(0, *lDecimals_));
}

Date localDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    Date date;
    date.year = local.tm_year + 1900;
    date.month = static_cast<std::uint8_t>(local.tm_mon + 1);
    date.day = static_cast<std::uint8_t>(local.tm_mday);
    return date;
}

} // namespace halvane::host::gdal
