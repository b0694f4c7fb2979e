#include "exporters/second/geometry/CoordinateText.h"

#include "base/PortableNumbers.h"

namespace halvane {

void CoordinateText::appendNumber(std::string& sText, double dValue) const {
    if (pFormat != nullptr)
        pFormat->appendNumber(sText, dValue, lDecimals);
    else
        appendPortableText(sText, dValue, lDecimals);
}

void CoordinateText::appendPosition(std::string& sText, const host::PointValues& point, char cBetween,
                                    bool bHeight) const {
    appendNumber(sText, bYFirst ? point.dY : point.dX);
    sText += cBetween;
    appendNumber(sText, bYFirst ? point.dX : point.dY);
    if (!bHeight)
        return;
    sText += cBetween;
    appendNumber(sText, point.dZ);
}

} // namespace halvane
