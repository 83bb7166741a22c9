' SPDX-License-Identifier: GPL-3.0-or-later
' What a text declares is there for the statements behind it, also where all names must be declared.
Option Explicit
ExecuteGlobal "Dim a, list(2), o : a = 5 : Const most = 7 : Function Twice(x) : Twice = 2 * x : End Function"
ExecuteGlobal "Sub Raise(x) : x = x + 1 : End Sub : Set o = CreateObject(""Scripting.Dictionary"") : Dim k"
Print a, most, Twice(a), Twice(most) + a  ' expect: 5 7 10 19
a = a + 1 : Print a  ' expect: 6
Raise a : Print a  ' expect: 7
list(1) = 4 : list(1) = list(1) + a : Print list(1)  ' expect: 11
o.Add "x", 1 : o("y") = 2 : Print o.Count, o("y")  ' expect: 2 2
Sub Count : For i = 1 To 3 : a = a + i : Next : For Each k In o : a = a & k : Next : End Sub
ExecuteGlobal "Dim i" : Count : Print a, i  ' expect: 13xy 4
Set o = Nothing : Print o Is Nothing  ' expect: True
ReDim k(3) : Print UBound(k)  ' expect: 3
On Error Resume Next
For a = 1 To 2 : Next : Print Err.Number : Err.Clear  ' expect: 501
For nowhere = 1 To 2 : Next : Print Err.Number : Err.Clear  ' expect: 500
most = 8 : Print Err.Number, most : Err.Clear  ' expect: 501 7
nowhere = 1 : Print Err.Number, Err.Description : Err.Clear  ' expect: 500 Variable is undefined
Print nowhere : Print Err.Number : Err.Clear  ' expect: 500
On Error GoTo 0
a = 1 : ExecuteGlobal "Function Hundred : a = 100 : Hundred = 1 : End Function"
Print a + Hundred, (a = Hundred)  ' expect: 2 False
a = "13xy"
Sub Here : Execute "Dim own : own = 7" : own = own + 1 : Print own, Eval("own") : End Sub
Here  ' expect: 8 8
Sub Later : Print Eval("a"), a : a = 1 : End Sub
Later : Print a  ' expect: 13xy 13xy
' expect: 1
