For i = 1 To 3 : s = s & i : Next
Print s, i, TypeName(i)  ' expect: 123 4 Integer
s = ""
For i = 3 To 1 Step -1 : s = s & i : Next
Print s, i  ' expect: 321 0
n = 0
For i = 5 To 1 : n = n + 1 : Next
Print n, i  ' expect: 0 5
limit = 3 : n = 0
For i = 1 To limit
  limit = 10
  n = n + 1
Next
Print n, i  ' expect: 3 4
s = ""
For i = 1 To 10
  s = s & i & " "
  i = i + 3
Next
Print s, i  ' expect: 1 5 9  13
n = 0
For x = 0 To 0.3 Step 0.1 : n = n + 1 : Next
Print n, x  ' expect: 3 0.3
n = 0
For x = 1 To 2 Step 0.25 : n = n + 1 : Next
Print n, x, TypeName(x)  ' expect: 5 2.25 Double
For i = 1 To 10
  If i = 4 Then Exit For
Next
Print i  ' expect: 4
s = ""
For i = 1 To 2
  For j = 1 To 3
    If j = 3 Then Exit For
    s = s & i & j & " "
  Next
Next
Print s  ' expect: 11 12 21 22
For i = 40000 To 40001 : Next
Print i, TypeName(i)  ' expect: 40002 Long
n = 0
Do While n < 3 : n = n + 1 : Loop
Print n  ' expect: 3
Do Until n = 0 : n = n - 1 : Loop
Print n  ' expect: 0
Do
  n = n + 1
Loop While n < 1
Print n  ' expect: 1
Do
  n = n + 1
Loop Until n >= 1
Print n  ' expect: 2
Do
  n = n + 1
  If n = 7 Then Exit Do
Loop
Print n  ' expect: 7
While n > 4
  n = n - 1
Wend
Print n  ' expect: 4
Do While False : Print "never" : Loop
Do While Null : Print "never" : Loop
For Each item In Array(1, "b", True)
  Print item, TypeName(item)
Next
' expect: 1 Integer
' expect: b String
' expect: True Boolean
a = Array(1, 2, 3)
For Each item In a
  item = item * 10
Next
Print Join(a)  ' expect: 1 2 3
Dim matrix(1, 2)
For i = 0 To 1
  For j = 0 To 2
    matrix(i, j) = i & j
  Next
Next
s = ""
For Each item In matrix : s = s & item & " " : Next
Print s  ' expect: 00 10 01 11 02 12
Dim unsized()
For Each item In unsized : Print "never" : Next
For Each item In Array() : Print "never" : Next
Set d = CreateObject("Scripting.Dictionary")
d("k1") = 1 : d("k2") = 2
For Each key In d
  Print key, d(key)
Next
' expect: k1 1
' expect: k2 2
Print IsEmpty(key)  ' expect: True
For Each key In d
  Exit For
Next
Print key  ' expect: k1
s = ""
For Each key In d.Items : s = s & key : Next
Print s  ' expect: 12
Sub Leave
  For i = 1 To 3
    For Each item In a
      Do
        Exit Sub
      Loop
    Next
  Next
End Sub
Leave
Print "left"  ' expect: left
' SPDX-License-Identifier: GPL-3.0-or-later
