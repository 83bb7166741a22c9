x = 5
Print Eval("x + 1"), Eval("x = 5"), x, Eval("""a"" & ""b""")  ' expect: 6 True 5 ab
Execute "x = 7" : Print x  ' expect: 7
Execute "y = 1 : z = y + 1" : Print y, z  ' expect: 1 2
Execute "If x = 7 Then" & vbCrLf & "  Print ""block""" & vbCrLf & "End If"  ' expect: block
Execute "Sub Made(a) : Print ""made"", a : End Sub"
Made 3  ' expect: made 3
ExecuteGlobal "Function Twice(a) : Twice = a * 2 : End Function"
Print Twice(21), Eval("Twice(4) + 1")  ' expect: 42 9
Sub Inside
  Dim q, g
  q = 1
  Execute "q = q + 1"
  Print q, Eval("q * 10")
  Execute "fresh = 1"
  ExecuteGlobal "outside = 2"
  ExecuteGlobal "x = 8"
End Sub
Inside  ' expect: 2 20
Print IsEmpty(fresh), outside, x  ' expect: True 2 8
formula = "(value - 4) / 16 * 100"
value = 12
Print Eval(formula)  ' expect: 50
Set d = Eval("CreateObject(""Scripting.Dictionary"")")
Print d.Count, IsArray(Eval("Array(1, 2)"))  ' expect: 0 True
On Error Resume Next
Execute "x = = 1" : Print Err.Number > 1000 And Err.Number < 1059 : Err.Clear  ' expect: True
x = Eval("1 + ") : Print Err.Number > 1000 And Err.Number < 1059 : Err.Clear  ' expect: True
Execute "Print ""not one""" & vbLf & "x = (" : Print Err.Number > 1000 : Err.Clear  ' expect: True
x = Eval("NoSuch(1)") : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
