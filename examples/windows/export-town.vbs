' The facts of a control file that need no map, and what an export passes back: cscript export-town.vbs FOLDER
Dim exporter, fileName, number, message, files, control
Set files = WScript.CreateObject("Scripting.FileSystemObject")
control = files.BuildPath(files.GetParentFolderName(WScript.ScriptFullName), "town.xml")
fileName = "no-map"
Set exporter = WScript.CreateObject("Halvane.clsExport")
exporter.Export2XML Nothing, control, WScript.Arguments(0), fileName, Nothing, "", number, message
WScript.Echo fileName & ": " & number & " " & message
