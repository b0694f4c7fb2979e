' The public collection from VBScript.
Dim failures, d, value, texts, sorted, n, a(2)
failures = 0
Sub Check(what, actual, expected)
    If actual = expected Then Exit Sub
    WScript.Echo what & ": " & actual & " instead of " & expected
    failures = failures + 1
End Sub

Set d = WScript.CreateObject("Halvane.dCollection")
Check "a value is added", d.Add("10", "Ten"), True
Check "a key is unique ignoring case", d.Add("x", "TEN"), False
Check "a number is added", d.Add(9, "Nine"), True
Check "a third value", d.Add("100", ""), True
Check "the count", d.Count, 3

texts = ""
For Each value In d
    texts = texts & value & ";"
Next
Check "the values in order", texts, "10;9;100;"
texts = ""
For Each value In d.ReturnKeys
    texts = texts & value & ";"
Next
Check "the keys in order", texts, "Ten;Nine;;"

n = d.ReturnSortedNumeric(sorted, d)
Check "the number of sorted values", n, 3
Check "the type of the sorted values", VarType(sorted), 8204
Check "the sorted values", sorted(0) & " " & sorted(1) & " " & sorted(2), "9 10 100"
n = d.ReturnSortedString(sorted, d.ReturnValues)
Check "the sorted texts", sorted(0) & " " & sorted(1) & " " & sorted(2), "10 100 9"
n = d.ReturnSortedDouble(sorted, Nothing)
Check "no collection", n, -1
Dim pair(1)
pair(0) = "kept"
Check "an array of another, fixed size", d.ReturnSortedNumeric(pair, d), -1
Check "what it holds", pair(0), "kept"

a(0) = 3.5
a(1) = 1.5
a(2) = 2.5
d.QuicksortDouble a, 0, 2
Check "an array sorted in place", a(0) & " " & a(1) & " " & a(2), "1.5 2.5 3.5"

Dim values(2), positions(2)
values(0) = 3
values(1) = 1
values(2) = 3
d.SortByValue values, positions, 3
Check "positions from the largest value on", positions(0) & positions(1) & positions(2), "201"

Dim empties
On Error Resume Next
d.QuicksortDouble empties, 0, 1
Check "the number of an error", Err.Number And 65535, 9
Check "the description of an error", Err.Description, "Subscript out of range"
On Error GoTo 0

Dim object
Set object = WScript.CreateObject("Halvane.dCollection")
d.Add object, "object"
Check "the same object", d.Item("object") Is object, True
Check "an absent object", d.Item("absent") Is Nothing, True
Check "an absent value", IsEmpty(d.GetValue("absent")), True
If failures = 0 Then
    WScript.Echo "all holds"
    WScript.Quit 7
End If
WScript.Quit 1
