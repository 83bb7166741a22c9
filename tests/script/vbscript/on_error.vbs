Sub Fails
  Print "failing"
  x = 1 / 0
  Print "never"
End Sub
Sub Passes
  Fails
  Print "never either"
End Sub
Sub Catches
  On Error Resume Next
  Passes
  Print "after", Err.Number
End Sub
Catches
' expect: failing
' expect: after 11
Print Err.Number  ' expect: 11
x = 1
Print Err.Number  ' expect: 11
Err.Clear
Sub CatchesNot
  On Error Goto 0
  x = CInt("a")
  Print "never"
End Sub
Function Value()
  Value = "set"
  x = 1 / 0
  Value = "later"
End Function
On Error Resume Next
CatchesNot
Print Err.Number : Err.Clear  ' expect: 13
r = "old"
r = Value()
Print r, Err.Number : Err.Clear  ' expect: old 11
a = 1 : b = 1 / 0 : Print "same line", Err.Number : Err.Clear  ' expect: same line 11
If 1 / 0 Then Print "then branch", Err.Number Else Print "else"  ' expect: then branch 11
Err.Clear
If CInt("x") = 1 Then
  Print "block", Err.Number  ' expect: block 13
Else
  Print "else"
End If
Err.Clear
If False Then
  Print "no"
ElseIf 1 / 0 Then
  Print "elseif", Err.Number  ' expect: elseif 11
Else
  Print "else"
End If
Err.Clear
Do While 1 / 0
  Print "body", Err.Number  ' expect: body 11
  Exit Do
Loop
Err.Clear
n = 0
For Each item In 5
  n = n + 1
  Print "each", Err.Number  ' expect: each 451
Next
Print n  ' expect: 1
Err.Clear
n = 0
For i = 1 To "abc"
  n = n + 1
Next
Print n, Err.Number  ' expect: 1 92
Err.Clear
Print "a", 1 / 0, "b"
Print "line skipped", Err.Number  ' expect: line skipped 11
Err.Clear
On Error Goto 0
Print Err.Number  ' expect: 0
Sub Inner
  On Error Resume Next
  x = 1 / 0
End Sub
Inner
Print "kept", Err.Number  ' expect: kept 11
On Error Goto 0
Print Err.Number  ' expect: 0
Sub Stops
  On Error Resume Next
  x = 1 / 0
  On Error Goto 0
  x = CInt("a")
End Sub
Stops
' ends with error 13 line 90 column 2
' SPDX-License-Identifier: GPL-3.0-or-later
