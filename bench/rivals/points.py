"""Writes the document of control/points.xml with the data library's Python bindings: points.py DATA DOCUMENT"""
import sys
from decimal import ROUND_HALF_UP, Decimal

from osgeo import ogr

SMALLEST = Decimal("1e-15")

def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;").replace("\r", "&#13;")


def real(value):
    """15 significant digits, at most 15 decimals, no padding zeros, no exponent."""
    text = repr(value)
    if len(text) > 15 or "e" in text:
        text = f"{value:.15g}"
        if "e" in text or abs(value) < 0.1:
            text = format(Decimal(text).quantize(SMALLEST, ROUND_HALF_UP), "f")
    return text.rstrip("0").rstrip(".") if "." in text else text


def day(feature, column):
    year, month, day_of_month, *_ = feature.GetFieldAsDateTime(column)
    return f"{month:02}/{day_of_month:02}/{year:04}"


def element(name, text):
    return f"<{name}>{text}</{name}>\r\n" if text else f"<{name}/>\r\n"


def point(feature):
    def optional(column, text):
        return text(column) if feature.IsFieldSetAndNotNull(column) else ""

    return "".join(
        [
            "<Point>\r\n<Number>",
            str(feature.GetFieldAsInteger(0)),
            "</Number>\r\n<Code>",
            str(feature.GetFieldAsInteger64(1)),
            "</Code>\r\n<Height>",
            real(feature.GetFieldAsDouble(2)),
            "</Height>\r\n<Share>",
            real(feature.GetFieldAsDouble(3)),
            "</Share>\r\n<Title>",
            escaped(feature.GetFieldAsString(4)),
            "</Title>\r\n",
            element("Remark", optional(5, lambda column: escaped(feature.GetFieldAsString(column)))),
            "<Kind>",
            escaped(feature.GetFieldAsString(6)),
            "</Kind>\r\n",
            element("Built", optional(7, lambda column: day(feature, column))),
            element("Balance", optional(8, lambda column: str(feature.GetFieldAsInteger(column)))),
            element("Value", optional(9, lambda column: real(feature.GetFieldAsDouble(column)))),
            "</Point>\r\n",
        ]
    )


def main(data, document):
    dataset = ogr.Open(data)
    layer = dataset.GetLayerByName("points")
    layer.SetIgnoredFields(["OGR_GEOMETRY"])
    with open(document, "w", encoding="utf-8", newline="", buffering=1 << 20) as out:
        out.write("<Points>\r\n<Layer>\r\n")
        for feature in layer:
            out.write(point(feature))
        out.write("</Layer>\r\n</Points>")


if __name__ == "__main__":
    main(*sys.argv[1:])
