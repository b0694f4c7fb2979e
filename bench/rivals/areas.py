"""Writes the document of control/areas.xml with the data library's Python bindings: areas.py DATA DOCUMENT"""
import sys

from osgeo import ogr

from points import real


def area(feature):
    pieces = [f'<Area number="{feature.GetFieldAsInteger(0)}">\r\n<Vertex>\r\n']
    polygon = feature.GetGeometryRef()
    for index in range(polygon.GetGeometryCount()):
        pieces.append("<Part>\r\n")
        for x, y in polygon.GetGeometryRef(index).GetPoints():
            pieces.append(f'<Vertex x="{real(x)}" y="{real(y)}"/>\r\n')
        pieces.append("</Part>\r\n")
    pieces.append("</Vertex>\r\n</Area>\r\n")
    return "".join(pieces)


def main(data, document):
    dataset = ogr.Open(data)
    layer = dataset.GetLayerByName("areas")
    layer.SetIgnoredFields(["kind"])
    with open(document, "w", encoding="utf-8", newline="", buffering=1 << 20) as out:
        out.write("<Areas>\r\n<Layer>\r\n")
        for feature in layer:
            out.write(area(feature))
        out.write("</Layer>\r\n</Areas>")


if __name__ == "__main__":
    main(*sys.argv[1:])
