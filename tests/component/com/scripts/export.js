// An export from JScript, with a map of the script's own objects.
var failures = 0;
function check(what, actual, expected) {
    if (actual === expected) return;
    WScript.Echo(what + ": " + actual + " instead of " + expected);
    failures++;
}
var files = new ActiveXObject("Scripting.FileSystemObject");
var folder = WScript.Arguments(0);
function write(name, text) {
    var file = files.CreateTextFile(folder + "\\" + name, true);
    file.Write(text);
    file.Close();
    return folder + "\\" + name;
}
function read(name) {
    var file = files.OpenTextFile(folder + "\\" + name);
    var text = file.ReadAll();
    file.Close();
    return text;
}

function field(name, type) {
    return { Name: name, FieldType: type, Length: 20, Precision: 0, IsNullable: true, IsEditable: true };
}
function row(id, values) {
    return { ObjectId: id, Value: function (index) { return values[index]; } };
}
var rows = [row(1, [1, "Oak & Elm"]), row(2, [2, null])];
var roads = {
    LayerKind: "FeatureLayer", Name: "Roads", SelectionCount: 0, SpatialReference: null,
    FeatureClass: {
        DatasetName: "roads", Fields: [field("ID", 6), field("NAME", 4)], Workspace: null, FeatureCount: 2,
        ShapeType: 3, SpatialReference: null, Subtypes: null,
        Search: function (clause) { return rows; }
    },
    SearchSelection: function () { return []; }
};
var map = { Name: "Town", Layers: [roads], StandaloneTables: [], SpatialReference: null };
var mapDocument = { FocusMap: map, Maps: [map] };

var control = write("control.xml",
    "<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='LayerName' IdentityValue='roads'>" +
    "<n Name='LayerName' DataProperty='LayerName'/>" +
    "<f Name='Road' DataSource='Feature' Entries='Multiple'><v Name='Name' Identity='FieldName' " +
    "IdentityValue='NAME'/></f></l></a>");
var exporter = new ActiveXObject("Halvane.clsExport");
exporter.Export2XML(mapDocument, control, folder, "out.xml", null, "", 0, "");
check("the document", read("out.xml").replace(/>\r\n</g, "><"),
    "<Out><Layer><LayerName>Roads</LayerName><Road><Name>Oak &amp; Elm</Name></Road>" +
    "<Road><Name/></Road></Layer></Out>");

rows.splice(1, 0, null, 7);
exporter.Export2XML(mapDocument, control, folder, "absent.xml", null, "", 0, "");
check("rows behind items that are none", read("absent.xml").replace(/>\r\n</g, "><"),
    "<Out><Layer><LayerName>Roads</LayerName><Road><Name>Oak &amp; Elm</Name></Road>" +
    "<Road><Name/></Road><Road><Name/></Road><Road><Name/></Road></Layer></Out>");

var tags = new ActiveXObject("Msxml2.DOMDocument.6.0");
tags.loadXML("<v><q TagName='street' Alias='Roads'/></v>");
var names = exporter.GetTagNames(tags, "//q");
check("a tag name", names.GetValue("STREET"), "ROADS");
check("nodes by name", exporter.GetNodesByName("q", tags).item(0).getAttribute("Alias"), "Roads");
check("nodes of no document", exporter.GetNodesByName("q", null), null);
control = write("control.xml",
    "<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='TagName' IdentityValue='Street' " +
    "DataProperty='LayerName'/></a>");
exporter.Export2XML(mapDocument, control, folder + "\\", "tags.xml", tags, "//q", 0, "");
check("a layer found by its tag", read("tags.xml").replace(/>\r\n</g, "><"), "<Out><Layer>Roads</Layer></Out>");
exporter.ShowExportGUI();
if (failures === 0) WScript.Echo("all holds");
WScript.Quit(failures === 0 ? 7 : 1);
