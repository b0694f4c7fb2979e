' A script that ends while the component still has the map document of an export that did not begin.
Dim asked
asked = 0
Class TownMap
    Public Property Get Name()
        Name = "Town"
    End Property
End Class
Class TownDocument
    Public Property Get FocusMap()
        asked = asked + 1
        Set FocusMap = New TownMap
    End Property
End Class
Dim files, folder, tags, exporter, fileName, number, message, failures
failures = 0
Sub Check(what, actual, expected)
    If actual = expected Then Exit Sub
    WScript.Echo what & ": " & actual & " instead of " & expected
    failures = failures + 1
End Sub
Set files = WScript.CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
Set tags = WScript.CreateObject("Msxml2.DOMDocument.6.0")
tags.loadXML "<v/>"
Set exporter = WScript.CreateObject("Halvane.clsExport")
fileName = "roads"
message = "as it was"
exporter.Export2XML New TownDocument, "control.xml", folder, fileName, tags, " ", number, message
Check "the map document was asked for its map", asked, 1
Check "the file name is completed", fileName, "roads.xml"
Check "nothing is told as a number", IsEmpty(number), True
Check "nothing is told as a message", message, "as it was"
Check "no file is written", files.FileExists(folder & "\roads.xml"), False
If failures = 0 Then
    WScript.Echo "all holds"
    WScript.Quit 7
End If
WScript.Quit 1
