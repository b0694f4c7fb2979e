// A script that ends while the component still has the map document of an export that did not begin.
var files = new ActiveXObject("Scripting.FileSystemObject");
var folder = WScript.Arguments(0);
var control = folder + "\\control.xml";
var file = files.CreateTextFile(control, true);
file.Write("<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='LayerName' " +
    "IdentityValue='Roads' DataProperty='LayerName'/></a>");
file.Close();
var layer = { LayerKind: "FeatureLayer", Name: "Roads", FeatureClass: null, SelectionCount: 0, SpatialReference: null };
var map = { Name: "Town", Layers: [layer], StandaloneTables: [], SpatialReference: null };
var tags = new ActiveXObject("Msxml2.DOMDocument.6.0");
tags.loadXML("<v/>");
var exporter = new ActiveXObject("Halvane.clsExport");
function exportWithoutPath(name) {
    exporter.Export2XML({ FocusMap: map, Maps: [map] }, control, folder, name, tags, " ", 0, "");
    return files.FileExists(folder + "\\" + name);
}
var failures = [];
if (exportWithoutPath("first.xml")) failures.push("a file was written");
// What it left behind shows in an export that is given neither a map document nor a control file.
exporter.Export2XML(null, "", folder, "kept.xml", null, "", 0, "");
file = files.OpenTextFile(folder + "\\kept.xml");
var kept = file.ReadAll().replace(/>\r\n</g, "><");
file.Close();
if (kept !== "<Out><Layer>Roads</Layer></Out>") failures.push("the map document was not kept: " + kept);
if (exportWithoutPath("last.xml")) failures.push("a file was written");
WScript.Echo(failures.length === 0 ? "all holds" : failures.join(", "));
WScript.Quit(failures.length === 0 ? 7 : 1);
