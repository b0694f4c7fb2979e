// A script that ends while the component still has the map document of an export that did not begin.
var map = { Name: "Town", Layers: [], StandaloneTables: [], SpatialReference: null };
var tags = new ActiveXObject("Msxml2.DOMDocument.6.0");
tags.loadXML("<v/>");
var exporter = new ActiveXObject("Halvane.clsExport");
exporter.Export2XML({ FocusMap: map, Maps: [map] }, "control.xml", WScript.Arguments(0), "out.xml", tags, " ", 0, "");
var files = new ActiveXObject("Scripting.FileSystemObject");
var written = files.FileExists(WScript.Arguments(0) + "\\out.xml");
WScript.Echo(written ? "a file was written" : "all holds");
WScript.Quit(written ? 1 : 7);
