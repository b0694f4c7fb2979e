// A small map as plain script objects, with the members that a host application has. makeTown() yields the map
// document; TownMap.js is read and evaluated by those who test with it.

function makeField(name, alias, type, length) {
    return { Name: name, AliasName: alias, FieldType: type, Length: length, Precision: 0,
             IsNullable: type != 6, IsEditable: type != 6 && type != 7 };
}

function makePoint(numbers) {
    return { X: numbers[0], Y: numbers[1], Z: numbers[2], M: numbers[3] };
}

// A shape from its parts, each a list of [x, y], [x, y, z] or [x, y, z, m].
function makeShape(type, length, parts) {
    var last = parts[parts.length - 1];
    function vertex(part, index) {
        if (part < 0 || part >= parts.length || index < 0 || index >= parts[part].length)
            throw new Error("there is no vertex " + index + " in part " + part);
        return parts[part][index];
    }
    return {
        GeometryType: type,
        Length: length,
        FromPoint: makePoint(parts[0][0]),
        ToPoint: makePoint(last[last.length - 1]),
        PartCount: parts.length,
        PointCount: function (part) { vertex(part, 0); return parts[part].length; },
        Point: function (part, index) { return makePoint(vertex(part, index)); }
    };
}

function makeReference(description) {
    return {
        Description: description,
        XyDomain: { XMin: -180, YMin: -90, XMax: 180, YMax: 90, FalseX: -400, FalseY: -400, Scale: 1000000 },
        ZDomain: null,
        MDomain: { Min: 0, Max: 1000, FalseOrigin: 0, Scale: 10 }
    };
}

function makeRow(values, shape) {
    return {
        ObjectId: values[0],
        Shape: shape,
        // The shape's field is the second.
        Value: function (index) { return index == 0 ? values[0] : index == 1 ? shape : values[index - 1]; }
    };
}

// Rows as a cursor: an object that is asked for the next one.
function makeCursor(rows) {
    var next = 0;
    return { NextRow: function () { return next < rows.length ? rows[next++] : null; } };
}

// Understands the clause NAME = NUMBER and NAME = 'TEXT' alone.
function satisfies(fields, row, clause) {
    var pieces = /^\s*(\w+)\s*=\s*(?:'(.*)'|(\d+))\s*$/.exec(clause);
    if (pieces == null)
        throw new Error("the clause is not understood: " + clause);
    for (var i = 0; i < fields.length; ++i)
        if (fields[i].Name.toUpperCase() == pieces[1].toUpperCase())
            return String(row.Value(i)) == (pieces[3] || pieces[2]);
    throw new Error("there is no field " + pieces[1]);
}

function fillTable(table, name, fields, rows, workspace) {
    table.DatasetName = name;
    table.Fields = fields;
    table.Workspace = workspace;
    table.Search = function (clause) {
        if (clause == "")
            return makeCursor(rows);
        var found = [];
        for (var i = 0; i < rows.length; ++i)
            if (satisfies(fields, rows[i], clause))
                found.push(rows[i]);
        return makeCursor(found);
    };
    return table;
}

function makeDomain(name, description, mergePolicy, splitPolicy, range, codes) {
    function code(index) {
        if (index < 0 || index >= codes.length)
            throw new Error("there is no code " + index);
        return codes[index];
    }
    return { Name: name, Description: description, FieldType: 1, MergePolicy: mergePolicy, SplitPolicy: splitPolicy,
             DomainType: range == null ? 2 : 1, MinValue: range && range[0], MaxValue: range && range[1],
             CodeCount: codes.length, CodeValue: function (index) { return code(index)[0]; },
             CodeName: function (index) { return code(index)[1]; } };
}

function makeDomains() {
    return [makeDomain("Surface", "what a road is made of", 1, 2, null, [[1, "gravel"], [2, "asphalt"]]),
            makeDomain("Lanes", "", 2, 1, [1, 8], [])];
}

function makeSubtypes(domains) {
    return {
        HasSubtypes: true,
        SubtypeFieldName: "KIND",
        DefaultSubtypeCode: 1,
        SubtypeCodes: [1, 2],
        SubtypeName: function (code) { return code == 1 ? "street" : "path"; },
        Domain: function (code, field) { return field == "SURFACE" ? domains[0] : null; },
        DefaultValue: function (code, field) { return field == "SURFACE" ? code : null; }
    };
}

function makeRelationshipClass() {
    return { Name: "RoadsToSigns", ForwardPathLabel: "has signs", BackwardPathLabel: "stands at",
             FeatureDatasetName: "", IsAttributed: false, IsComposite: true, Notification: 2, Cardinality: 2,
             OriginClassName: "Roads", DestinationClassName: "Signs", OriginPrimaryKey: "OBJECTID",
             OriginForeignKey: "ROAD", DestinationPrimaryKey: "", DestinationForeignKey: "" };
}

function makeRoads(workspace, domains, reference) {
    var fields = [makeField("OBJECTID", "", 6, 4), makeField("SHAPE", "", 7, 0),
                  makeField("NAME", "Name of road", 4, 40), makeField("KIND", "", 1, 4),
                  makeField("SURFACE", "", 1, 4), makeField("WIDTH", "Width", 3, 8), makeField("OPENED", "", 4, 20)];
    var rows = [
        makeRow([1, "Mill Lane", 1, 2, 6.5, "17 May 1921"],
                makeShape(3, 5, [[[0, 0], [3, 4]]])),
        makeRow([2, "\u00c4hrenweg <north>", 2, 1, 2.25, null],
                makeShape(3, 7, [[[0, 0, 1, 10], [0, 3, 2, 20]], [[10, 10, 3, 30], [14, 10, 4, 40]]])),
        makeRow([3, "Quay", null, null, null, null], null)
    ];
    var roads = fillTable({}, "Roads", fields, rows, workspace);
    roads.FeatureCount = rows.length;
    roads.ShapeType = 3;
    roads.SpatialReference = reference;
    roads.Subtypes = makeSubtypes(domains);
    return roads;
}

// A row of the table that has no shapes.
function makeSign(values) {
    return { ObjectId: values[0], Value: function (index) { return values[index]; } };
}

function makeSigns(workspace) {
    var fields = [makeField("OBJECTID", "", 6, 4), makeField("ROAD", "", 1, 4), makeField("TEXT", "", 4, 20)];
    var rows = [makeSign([1, 1, "Stop"]), makeSign([2, 2, "No through road"]), makeSign([3, 1, "Give way"])];
    return fillTable({}, "Signs", fields, rows, workspace);
}

function makeFeatureLayer(name, featureClass, selection) {
    return {
        LayerKind: "FeatureLayer",
        Name: name,
        FeatureClass: featureClass,
        SpatialReference: featureClass == null ? null : featureClass.SpatialReference,
        SelectionCount: selection.length,
        SearchSelection: function () { return makeCursor(selection); }
    };
}

function makePropertySet() {
    var values = {};
    return { SetProperty: function (name, value) { values[name] = value; },
             GetProperty: function (name) { return values[name]; } };
}

// What the map document's application makes for its clients.
function makeApplication(workspace) {
    return {
        PathSeparator: "\\",
        NewFeatureLayer: function () { return makeFeatureLayer("", null, []); },
        NewPropertySet: makePropertySet,
        NewWorkspaceFactory: function (kind) {
            var open = function (path) {
                if (path != workspace.PathName)
                    throw new Error("there is no workspace " + path);
                return workspace;
            };
            return { Open: function (properties, window) { return open(properties.GetProperty("DATABASE")); },
                     OpenFromFile: function (path, window) { return open(path); } };
        }
    };
}

function makeTown() {
    var reference = makeReference("PROJECTION GEOGRAPHIC\nUNITS DD");
    var domains = makeDomains();
    var workspace = { PathName: "C:\\town.mdb", WorkspaceType: 1, Domains: domains,
                      RelationshipClasses: [makeRelationshipClass()] };
    var roads = makeRoads(workspace, domains, reference);
    var signs = makeSigns(workspace);
    workspace.OpenFeatureClass = function (name) {
        if (name.toUpperCase() != "ROADS")
            throw new Error("there is no feature class " + name);
        return roads;
    };
    workspace.OpenTable = function (name) {
        return name.toUpperCase() == "SIGNS" ? signs : workspace.OpenFeatureClass(name);
    };
    var chosen = function (id) { return roads.Search("OBJECTID = " + id).NextRow(); };
    var map = {
        Name: "Town",
        Layers: [makeFeatureLayer("Roads", roads, []),
                 { LayerKind: "GroupLayer", Name: "Backdrop",
                   Layers: [{ LayerKind: "RasterLayer", Name: "Photo", FilePath: "C:\\photo.tif" },
                            { LayerKind: "TinLayer", Name: "Relief", Dataset: { Workspace: workspace } }] },
                 { LayerKind: "AnnotationLayer", Name: "Names" },
                 makeFeatureLayer("Chosen", roads, [chosen(2), chosen(1)])],
        StandaloneTables: [signs, null],
        SpatialReference: reference
    };
    return { FocusMap: map, Maps: [map, { Name: "Region", Layers: [], StandaloneTables: [],
                                          SpatialReference: null }],
             Application: makeApplication(workspace) };
}
