' Without Option Explicit a name that a procedure assigns is its own, until the top level has assigned it.
Sub Early : x = 5 : e = 5 : End Sub
Early : Print x, e  ' expect:
x = 1 : e = Empty
Early : Print x, e  ' expect: 5 5
If False Then neverRun = 1
Sub Never : neverRun = 2 : End Sub
Never : Never : Print neverRun  ' expect:
Sub Declared : d = 3 : ReDim r(2) : End Sub
Declared : Print d, UBound(r)  ' expect: 3 2
Dim d : ReDim r(1)
Function Total(a, ByVal b)
  sum = sum + a + b
  a = a + 1
  Total = sum
End Function
n = 1 : Print Total(n, 1), Total(n, 1), n  ' expect: 2 3 3
sum = 100 : Print Total(n, 1), Total(n, 1), n  ' expect: 104 109 5
Sub Lately : late = late + 1 : Bench.Print late : End Sub
Lately : Lately
' expect: 1
' expect: 1
ExecuteGlobal "late = 7"
Lately : Lately : Print late
' expect: 8
' expect: 9
' expect: 9
Sub Executes : Execute "inner = 1" : Print inner : End Sub
Executes : Print inner  ' expect: 1
' expect:
inner = 0 : Executes : Print inner  ' expect: 1
' expect: 1
For i = 1 To 2 : Walks : Next
Sub Walks : For i = 1 To 5 : Next : Print "once" : End Sub
' expect: once
Class Keeper
  Public kept
  Sub Class_Initialize : kept = 1 : own = 2 : End Sub
End Class
Set k = New Keeper : Print k.kept, own  ' expect: 1
kept = 9 : own = 1 : Set k = New Keeper : Print kept, own  ' expect: 9 2
' SPDX-License-Identifier: GPL-3.0-or-later
