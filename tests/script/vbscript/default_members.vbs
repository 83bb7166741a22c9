Class Value
  Private held_
  Public Default Property Get Item()
    Item = held_
  End Property
  Public Property Let Item(value)
    held_ = value
  End Property
End Class
Class Square
  Public Default Function Compute(n)
    Compute = n * n
  End Function
End Class
Set v = New Value : v.Item = 5
x = v
Print x, TypeName(x), IsObject(v)  ' expect: 5 Integer True
Print v, v + 1, v & "!", v * 2, -v, v = 5, v > 4  ' expect: 5 6 5! 10 -5 True True
Print Abs(v), CStr(v), Left("abcdefgh", v), Len(v)  ' expect: 5 5 abcde 1
a = Array(10, 20, 30, 40, 50, 60)
Print a(v)  ' expect: 60
If v = 5 Then Print "equal"  ' expect: equal
Select Case v
  Case 5 : Print "case"  ' expect: case
End Select
n = 0
For i = 1 To v : n = n + 1 : Next
Print n  ' expect: 5
Set w = v
w.Item = 6 : Print v  ' expect: 6
v.Item = True : If v Then Print "true"  ' expect: true
Set q = New Square
Print q(4), q.Compute(5), q(2) + q(3)  ' expect: 16 25 13
Set d = CreateObject("Scripting.Dictionary")
d("k") = 1
d("k") = d("k") + 1
Print d("k"), d.Item("k")  ' expect: 2 2
Sub Take(ByVal y)
  Print IsObject(y)
End Sub
Take v  ' expect: True
On Error Resume Next
x = q : Print Err.Number <> 0 : Err.Clear  ' expect: True
x = d + 1 : Print Err.Number <> 0 : Err.Clear  ' expect: True
' SPDX-License-Identifier: GPL-3.0-or-later
