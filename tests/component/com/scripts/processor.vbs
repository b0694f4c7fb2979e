' A map and an external processor as VBScript classes.
Dim failures, files, folder, file, written
failures = 0
Sub Check(what, actual, expected)
    If actual = expected Then Exit Sub
    WScript.Echo what & ": " & actual & " instead of " & expected
    failures = failures + 1
End Sub

Class TownMap
    Public Property Get Name()
        Name = "Town"
    End Property
    Public Property Get Layers()
        Layers = Array()
    End Property
    Public Property Get StandaloneTables()
        StandaloneTables = Array()
    End Property
    Public Property Get SpatialReference()
        Set SpatialReference = Nothing
    End Property
End Class

Class TownReport
    Public Function Process(variables)
        variables.Add "left by the script", "Mark"
        Process = variables.Item("DataFrame").Name & ", " & variables.GetValue("MARK")
    End Function
End Class

Class TownApplication
    Public Function NewFeatureLayer()
        Set NewFeatureLayer = Nothing
    End Function
    Public Function NewPropertySet()
        Set NewPropertySet = Nothing
    End Function
    Public Function NewWorkspaceFactory(kind)
        Set NewWorkspaceFactory = Nothing
    End Function
    Public Function CreateComponent(progId)
        Set CreateComponent = New TownReport
    End Function
End Class

Class TownDocument
    Public FocusMap
    Public Application
    Private Sub Class_Initialize()
        Set FocusMap = New TownMap
        Set Application = New TownApplication
    End Sub
    Public Property Get Maps()
        Maps = Array(FocusMap)
    End Property
End Class

Set files = WScript.CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
Set file = files.CreateTextFile(folder & "\control.xml", True)
file.Write "<a Name='Out'><m Name='Map' DataSource='Map'><p Name='Report' DataSource='External' IdentityValue='Town.Report'/></m></a>"
file.Close
Dim number, message
number = 0
message = ""
WScript.CreateObject("Halvane.clsExport").Export2XML New TownDocument, folder & "\control.xml", folder, "out.xml", Nothing, "", number, message
Check "the error message", message, ""
Set file = files.OpenTextFile(folder & "\out.xml")
written = Replace(file.ReadAll, ">" & vbCrLf & "<", "><")
file.Close
Check "the document", written, "<Out><Map><Report>Town, left by the script</Report></Map></Out>"
If failures = 0 Then
    WScript.Echo "all holds"
    WScript.Quit 7
End If
WScript.Quit 1
