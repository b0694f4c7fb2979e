// External processors written in JScript, which the script's own application hands out.
var failures = 0;
function check(what, actual, expected) {
    if (actual === expected) return;
    WScript.Echo(what + ": " + actual + " instead of " + expected);
    failures++;
}
var files = new ActiveXObject("Scripting.FileSystemObject");
var folder = WScript.Arguments(0);
var control = folder + "\\control.xml";
var file = files.CreateTextFile(control, true);
file.Write("<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>" +
    "<p Name='Report' DataSource='External' IdentityValue='Town.Report'/>" +
    "<p Name='Again' DataSource='External' IdentityValue='Town.Report'/></l></a>");
file.Close();

var layer = { LayerKind: "FeatureLayer", Name: "Roads", FeatureClass: null, SelectionCount: 0, SpatialReference: null };
var map = { Name: "Town", Layers: [layer], StandaloneTables: [], SpatialReference: null };
var kept = null;
var report = {
    Process: function (variables) {
        var before = kept;
        kept = variables;
        variables.SetValue("by the processor", "Mark");
        var keys = [];
        for (var e = new Enumerator(variables.ReturnKeys()); !e.atEnd(); e.moveNext()) keys.push(e.item());
        return keys.join(" ") + (variables.Item("FeatureLayer") === layer ? " same layer" : " other layer") +
            (before === null ? "" : " " + before.GetValue("Mark"));
    }
};
var application = {
    NewFeatureLayer: function () { return null; }, NewPropertySet: function () { return null; },
    NewWorkspaceFactory: function () { return null; },
    CreateComponent: function (progId) { return progId === "Town.Report" ? report : null; }
};
var mapDocument = { FocusMap: map, Maps: [map], Application: application };

new ActiveXObject("Halvane.clsExport").Export2XML(mapDocument, control, folder, "out.xml", null, "", 0, "");
file = files.OpenTextFile(folder + "\\out.xml");
check("the values of the processor", file.ReadAll().replace(/>\r\n</g, "><"),
    "<Out><Layer><Report>FeatureLayer DataFrame Mark same layer</Report>" +
    "<Again>FeatureLayer DataFrame Mark same layer by the processor</Again></Layer></Out>");
file.Close();
check("the collection outlives the export", typeof kept.Count, "number");
if (failures === 0) WScript.Echo("all holds");
WScript.Quit(failures === 0 ? 7 : 1);
