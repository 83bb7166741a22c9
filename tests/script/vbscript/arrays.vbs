Dim a(2), m(1, 2), open()
a(0) = "x" : a(2) = 5
Print UBound(a), LBound(a), IsEmpty(a(1)), a(0), a(2)  ' expect: 2 0 True x 5
Print UBound(m), UBound(m, 1), UBound(m, 2), LBound(m, 2)  ' expect: 1 1 2 0
m(1, 2) = "corner"
Print m(1, 2), IsEmpty(m(0, 0)), m("1", 1.5)  ' expect: corner True corner
Print a(1.5), a(2.5), a("0"), a(False)  ' expect: 5 5 x x
b = Array(1, "two", 3.5)
c = b
c(0) = 100
Print Join(b), Join(c)  ' expect: 1 two 3.5 100 two 3.5
Function Returned()
  Returned = b
End Function
d = Returned()
d(1) = "copy"
Print b(1), d(1)  ' expect: two copy
Sub ChangeFirst(list)
  list(0) = "by reference"
End Sub
Sub ChangeCopy(ByVal list)
  list(0) = "never seen"
End Sub
ChangeFirst b : Print b(0)  ' expect: by reference
ChangeCopy b : Print b(0)  ' expect: by reference
nested = Array(Array(1, 2), Array(3, 4, 5))
Print nested(1)(2), UBound(nested(1)), nested(0)(0)  ' expect: 5 2 1
nested(0)(0) = 9
Print nested(0)(0)  ' expect: 9
inner = nested(0)
inner(0) = 7
Print nested(0)(0), inner(0)  ' expect: 9 7
Erase a
Print UBound(a), IsEmpty(a(0))  ' expect: 2 True
e = Array(1, 2)
Erase e
none = Array()
Print UBound(none), IsArray(none), IsArray(open), TypeName(open)  ' expect: -1 True True Variant()
On Error Resume Next
x = UBound(e) : Print Err.Number : Err.Clear  ' expect: 9
x = UBound(open) : Print Err.Number : Err.Clear  ' expect: 9
x = open(0) : Print Err.Number : Err.Clear  ' expect: 9
x = a(3) : Print Err.Number : Err.Clear  ' expect: 9
x = a(-1) : Print Err.Number : Err.Clear  ' expect: 9
a(3) = 1 : Print Err.Number : Err.Clear  ' expect: 9
x = a(0, 0) : Print Err.Number : Err.Clear  ' expect: 9
x = m(0) : Print Err.Number : Err.Clear  ' expect: 9
x = UBound(a, 2) : Print Err.Number : Err.Clear  ' expect: 9
x = UBound(a, 0) : Print Err.Number : Err.Clear  ' expect: 9
x = UBound(5) : Print Err.Number : Err.Clear  ' expect: 13
x = a("k") : Print Err.Number : Err.Clear  ' expect: 13
x = a & "" : Print Err.Number : Err.Clear  ' expect: 13
x = 5 : y = x(0) : Print Err.Number : Err.Clear  ' expect: 13
n = Array(1, Array(2, Array(3, 4))) : n(1)(1)(0) = 5 : Print n(1)(1)(0), n(1)(1)(1)  ' expect: 5 4
Function Dropping() : n = Empty : Dropping = 1 : End Function
n(1)(Dropping()) = 2 : Print Err.Number, IsEmpty(n) : Err.Clear  ' expect: 13 True
Class Dropper : Public Default Property Get Value : n = Empty : Value = 1 : End Property : End Class
n = Array(1) : n(0) = New Dropper : Print Err.Number, IsEmpty(n)  ' expect: 13 True
n = Array(Array(1, 2), 3) : n(0)(New Dropper) = 5 : Print IsEmpty(n)  ' expect: True
n = Array(1, 2) : n(New Dropper) = 5 : Print IsEmpty(n)  ' expect: True
' SPDX-License-Identifier: GPL-3.0-or-later
