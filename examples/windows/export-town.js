// Exports the map of TownMap.js by the control file town.xml: cscript export-town.js [FOLDER]
// The document, town-out.xml, comes to stand in that folder, or beside this script.
var files = new ActiveXObject("Scripting.FileSystemObject");
var here = files.GetParentFolderName(WScript.ScriptFullName);

// The sample host: plain script objects.
var source = files.OpenTextFile(files.BuildPath(here, "TownMap.js"));
eval(source.ReadAll());
source.Close();

var folder = WScript.Arguments.length > 0 ? WScript.Arguments(0) : here;
var exporter = new ActiveXObject("Halvane.clsExport");
exporter.Export2XML(makeTown(), files.BuildPath(here, "town.xml"), folder, "town-out.xml", null, "", 0, "");
// Whether a document was written is not told to callers of this method.
if (!files.FileExists(files.BuildPath(folder, "town-out.xml"))) {
  WScript.Echo("Nothing was written to " + folder + ": is there such a folder, and may you write there?");
  WScript.Quit(1);
}
WScript.Echo("Wrote " + files.BuildPath(folder, "town-out.xml"));
