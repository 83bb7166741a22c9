Dim a(), fixed(2)
ReDim a(2)
a(0) = 1 : a(2) = 3
ReDim Preserve a(4)
Print UBound(a), a(0), a(2), IsEmpty(a(4))  ' expect: 4 1 3 True
ReDim Preserve a(0)
Print UBound(a), a(0)  ' expect: 0 1
ReDim a(1)
Print UBound(a), IsEmpty(a(0))  ' expect: 1 True
ReDim declared(3)
Print UBound(declared)  ' expect: 3
ReDim grid(1, 1), other(5)
grid(1, 1) = "kept"
ReDim Preserve grid(1, 3)
Print UBound(grid, 2), grid(1, 1), UBound(other)  ' expect: 3 kept 5
n = 3
ReDim a(n * 2)
Print UBound(a)  ' expect: 6
ReDim a(2, 3)
Print UBound(a, 2)  ' expect: 3
ReDim a(-1)
Print UBound(a)  ' expect: -1
b = Array(1, 2, 3)
ReDim Preserve b(3)
Print Join(b, ",")  ' expect: 1,2,3,
Erase b
ReDim b(1)
Print UBound(b)  ' expect: 1
Sub Local()
  ReDim inside(2)
  inside(0) = "in"
  Print UBound(inside)
End Sub
Local  ' expect: 2
Print IsEmpty(inside)  ' expect: True
On Error Resume Next
ReDim fixed(5) : Print Err.Number, UBound(fixed) : Err.Clear  ' expect: 10 2
ReDim Preserve fixed(5) : Print Err.Number : Err.Clear  ' expect: 10
ReDim Preserve grid(2, 3) : Print Err.Number, grid(1, 1) : Err.Clear  ' expect: 9 kept
ReDim Preserve grid(5) : Print Err.Number : Err.Clear  ' expect: 9
ReDim a(-2) : Print Err.Number : Err.Clear  ' expect: 9
' SPDX-License-Identifier: GPL-3.0-or-later
