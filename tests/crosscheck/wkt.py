"""Reads well-known text: parts, vertices and lengths, by arithmetic of its own."""
import math
import re

TOKEN = re.compile(r"[A-Za-z]+|[-+]?[0-9][-+.0-9eE]*|[(),]")


class Shape:
    """A shape: its kind, the letters of its further ordinates ("", "Z", "M", "ZM"), and members or coordinates."""

    def __init__(self, kind, ordinates, members, points):
        self.kind, self.ordinates, self.members, self.points = kind, ordinates, members, points

    def parts(self):
        """A list of vertices for each part: (x, y, z or None, m or None)."""
        if self.kind == "MULTIPOINT":
            points = [point for member in self.members for point in member.vertices()]
            return [points] if points else []
        if self.members is not None:
            return [part for member in self.members for part in member.parts()]
        vertices = self.vertices()
        return [vertices] if vertices else []

    def vertices(self):
        return [vertex(point, self.ordinates) for point in self.points or []]

    def length(self):
        if self.kind in ("POINT", "MULTIPOINT"):
            return 0.0
        if self.members is not None:
            return math.fsum(member.length() for member in self.members)
        if self.kind == "CIRCULARSTRING":
            return math.fsum(arc_length(*(point[:2] for point in self.points[start:start + 3]))
                             for start in range(0, len(self.points) - 2, 2))
        return math.fsum(math.dist(left[:2], right[:2]) for left, right in zip(self.points, self.points[1:]))


def vertex(point, ordinates):
    values = dict(zip("XY" + ordinates, point))
    return values["X"], values["Y"], values.get("Z"), values.get("M")


def arc_length(start, middle, end):
    """The length of the arc through three points; that of a whole circle where it ends at its start."""
    if start == end:
        return math.pi * math.dist(start, middle)
    a, b, c = math.dist(middle, end), math.dist(start, end), math.dist(start, middle)
    # From the start to the middle: an arc ends at both with an angle at the other end of half its own.
    cross = (middle[0] - start[0]) * (end[1] - start[1]) - (middle[1] - start[1]) * (end[0] - start[0])
    if cross == 0:
        return b
    radius = a * b * c / (2 * abs(cross))
    inner = math.acos(max(-1.0, min(1.0, (a * a + c * c - b * b) / (2 * a * c))))  # the angle at the middle
    return radius * (2 * math.pi - 2 * inner)


class Reader:
    MEMBERS = {"MULTIPOINT": "POINT", "MULTILINESTRING": "LINESTRING", "MULTIPOLYGON": "POLYGON",
               "POLYGON": "LINESTRING", "TRIANGLE": "LINESTRING", "TIN": "TRIANGLE", "POLYHEDRALSURFACE": "POLYGON",
               "GEOMETRYCOLLECTION": None, "COMPOUNDCURVE": "LINESTRING", "CURVEPOLYGON": "LINESTRING",
               "MULTICURVE": "LINESTRING", "MULTISURFACE": "POLYGON"}

    def __init__(self, text):
        self.tokens = TOKEN.findall(text)

    def peek(self):
        return self.tokens[0].upper() if self.tokens else ""

    def take(self):
        return self.tokens.pop(0).upper()

    def shape(self, kind=None, ordinates=""):
        """A shape; its kind is given where the text may leave it out."""
        if self.peek().isalpha() and self.peek() != "EMPTY":
            kind, ordinates = re.fullmatch(r"(.*?)(ZM|Z|M)?", self.take()).group(1, 2)
            ordinates = ordinates or ""
            if self.peek() in ("Z", "M", "ZM"):
                ordinates = self.take()
        if self.peek() == "EMPTY":
            self.take()
            return Shape(kind, ordinates, [] if kind in self.MEMBERS else None, [])
        if kind in self.MEMBERS:
            return Shape(kind, ordinates, self.list(lambda: self.member(kind, ordinates)), None)
        return Shape(kind, ordinates, None, self.list(self.point))

    def member(self, kind, ordinates):
        # The points of a multipoint may stand without brackets.
        if kind == "MULTIPOINT" and self.peek() not in ("(", "EMPTY"):
            return Shape("POINT", ordinates, None, [self.point()])
        return self.shape(self.MEMBERS[kind], ordinates)

    def list(self, item):
        assert self.take() == "("
        items = [item()]
        while self.take() == ",":
            items.append(item())
        return items

    def point(self):
        numbers = []
        while self.peek() not in (",", ")"):
            numbers.append(float(self.take()))
        return tuple(numbers)


def read(text):
    return Reader(text).shape() if text else None
