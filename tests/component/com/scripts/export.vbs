' An export from VBScript, whose variables receive what is passed back.
Dim failures, files, folder, exporter, fileName, number, message, file
failures = 0
Sub Check(what, actual, expected)
    If actual = expected Then Exit Sub
    WScript.Echo what & ": " & actual & " instead of " & expected
    failures = failures + 1
End Sub
Function Write(name, text)
    Set file = files.CreateTextFile(folder & "\" & name, True)
    file.Write text
    file.Close
    Write = folder & "\" & name
End Function

Set files = WScript.CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
Set exporter = WScript.CreateObject("Halvane.clsExport")
fileName = "roads"
number = 17
message = "as it was"
exporter.Export2XML Nothing, Write("control.xml", "<a Name='Out'><b Name='T'/></a>"), folder, fileName, Nothing, "", number, message
Check "the file name is completed", fileName, "roads.xml"
Check "the error number", number, 0
Check "the error message", message, ""
Check "the file is written", files.FileExists(folder & "\roads.xml"), True

Class NoMapDocument
    Public Default Property Get Name()
        Name = "no map document"
    End Property
End Class
fileName = "other.xml"
exporter.Export2XML New NoMapDocument, folder & "\control.xml", folder, fileName, Nothing, "", number, message
Check "an error number is passed back", number <> 0, True
Check "an error message is passed back", InStr(message, "FocusMap") > 0, True
Check "no file is written", files.FileExists(folder & "\other.xml"), False
If failures = 0 Then
    WScript.Echo "all holds"
    WScript.Quit 7
End If
WScript.Quit 1
