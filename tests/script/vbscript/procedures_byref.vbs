Sub Change(x)
  x = "changed"
End Sub
Sub Keep(ByVal x)
  x = "changed"
End Sub
v = "old" : Change v : Print v  ' expect: changed
v = "old" : Change (v) : Print v  ' expect: old
v = "old" : Call Change(v) : Print v  ' expect: changed
v = "old" : Call Change((v)) : Print v  ' expect: old
v = "old" : Keep v : Print v  ' expect: old
v = "old" : Change v & "" : Print v  ' expect: old
a = Array(1, 2, 3)
Change a(1) : Print Join(a)  ' expect: 1 changed 3
Change (a(0)) : Print Join(a)  ' expect: 1 changed 3
Call Change(a(2)) : Print Join(a)  ' expect: 1 changed changed
Dim grid(1, 1)
Change grid(1, 0) : Print grid(1, 0), IsEmpty(grid(0, 1))  ' expect: changed True
Change "literal" : Change 5 : Change v
Sub Both(ByRef x, ByVal y)
  x = x + 1 : y = y + 1
End Sub
p = 1 : q = 1 : Both p, q : Print p, q  ' expect: 2 1
Both p, p : Print p  ' expect: 3
Sub Twice(x)
  Change x
End Sub
v = "old" : Twice v : Print v  ' expect: changed
Function Swap(x, y)
  t = x : x = y : y = t
  Swap = x & y
End Function
m = 1 : n = 2
r = Swap(m, n)
Print r, m, n  ' expect: 21 2 1
Sub Show(x)
  Print "<" & x & ">"
End Sub
z = 4
Show (z) + 1  ' expect: <5>
Show (z)  ' expect: <4>
Show -z  ' expect: <-4>
Show (1 + 1) * 3  ' expect: <6>
Function Nothing2
End Function
Print IsEmpty(Nothing2), IsEmpty(Nothing2())  ' expect: True True
Function Factorial(n)
  If n <= 1 Then
    Factorial = 1
    Exit Function
  End If
  Factorial = n * Factorial(n - 1)
End Function
Print Factorial(5), Factorial(10), TypeName(Factorial(7)), TypeName(Factorial(8))  ' expect: 120 3628800 Integer Long
Function Sum(values)
  For Each value In values
    Sum = Sum + value
  Next
End Function
Print Sum(Array(1, 2, 3)), Sum(Array())  ' expect: 6
Function Pair()
  Pair = Array("left", "right")
End Function
Print Pair()(1), UBound(Pair)  ' expect: right 1
Function Made()
  Set Made = CreateObject("Scripting.Dictionary")
  Made.Add "key", "value"
End Function
Print Made()("key"), Made.Count  ' expect: value 1
k = 1 : r = Swap((k), 5) : Print r, k  ' expect: 51 1
Sub Early
  Print "before"
  Exit Sub
  Print "after"
End Sub
Call Early  ' expect: before
Call Early()  ' expect: before
Early()  ' expect: before
Sub OneLine() : Print "one line" End Sub
OneLine  ' expect: one line
Sub Fill(list)
  list(0) = "filled"
  ReDim Preserve list(4)
End Sub
ReDim dynamic(1)
Fill dynamic
Print dynamic(0), UBound(dynamic)  ' expect: filled 4
Later "called"
Sub Later(text)
  Print text  ' expect: called
End Sub
Sub Late
  Print "first"
End Sub
Late  ' expect: last
Sub Late
  Print "last"
End Sub
On Error Resume Next
Both 1 : Print Err.Number : Err.Clear  ' expect: 450
Both 1, 2, 3 : Print Err.Number : Err.Clear  ' expect: 450
NoSuch 1
Print Err.Number, Err.Description : Err.Clear  ' expect: 13 Type mismatch
x = NoSuch(1) : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
Sub Product(one, other, ByVal divisor, whole, rest)
  whole = one * other \ divisor
  rest = one * other Mod divisor
End Sub
a = 300 : b = 300 : q = "text" : r = Array(1)
Product a, b, 7, q, r : Print q, TypeName(q), r, TypeName(r)  ' expect: 12857 Long 1 Long
Product a, a, 7, a, r : Print a, r  ' expect: 12857 4
a = 2.5 : Product a, 2, 2, q, r : Print q, TypeName(q), r  ' expect: 2 Long 1
