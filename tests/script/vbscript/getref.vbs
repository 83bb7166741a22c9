Function Add(a, b)
  Add = a + b
End Function
Sub Grow(x)
  Print "grow", x
End Sub
Function Apply(action, a, b)
  Apply = action(a, b)
End Function
Set f = GetRef("add")
Print f(1, 2), Apply(f, 3, 4), Apply(GetRef("Add"), "a", "b"), IsObject(f)  ' expect: 3 7 ab True
Set table = CreateObject("Scripting.Dictionary")
table.Add "+", GetRef("Add")
Set chosen = table("+")
Print chosen(20, 22)  ' expect: 42
Set g = GetRef("Grow")
g 5 : Call g("six")
' expect: grow 5
' expect: grow six
Print f Is f, f Is g, g Is Nothing  ' expect: True False False
On Error Resume Next
Set h = GetRef("NoSuch") : Print Err.Number : Err.Clear  ' expect: 5
x = f(1) : Print Err.Number : Err.Clear  ' expect: 450
' SPDX-License-Identifier: GPL-3.0-or-later
