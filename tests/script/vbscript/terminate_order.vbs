Class Guard
  Public Name, Inner
  Private Sub Class_Terminate
    Print "end", Name
  End Sub
End Class
Function Make(name)
  Set Make = New Guard
  Make.Name = name
End Function
Set a = Make("a")
Set a = Nothing  ' expect: end a
Print "next"  ' expect: next
Set a = Make("b")
Set a = Make("c")  ' expect: end b
a = 5  ' expect: end c
Set a = Make("d")
Set b = a
Set a = Nothing
Print "still"  ' expect: still
Set b = Nothing  ' expect: end d
Sub Scope
  Dim g
  Set g = Make("local")
  Print "in"
End Sub
Scope
' expect: in
' expect: end local
Print "out"  ' expect: out
Sub Use(g)
  Print "using", g.Name
End Sub
Use Make("temporary")
' expect: using temporary
' expect: end temporary
With Make("with")
  Print .Name  ' expect: with
End With  ' expect: end with
With New Guard
  .Name = "anonymous"
End With  ' expect: end anonymous
Make "unused"  ' expect: end unused
Set seen = CreateObject("Scripting.Dictionary")
Set a = Make("asked") : seen.Exists a : Set a = Nothing  ' expect: end asked
Set a = Make("outer")
Set a.Inner = Make("inner")
Set a = Nothing
' expect: end outer
' expect: end inner
list = Array(Make("first"), Make("second"))
Set list(0) = Nothing  ' expect: end first
Erase list  ' expect: end second
Set d = CreateObject("Scripting.Dictionary")
d.Add "k", Make("stored")
d.Remove "k"  ' expect: end stored
Sub Failing
  Dim g
  Set g = Make("unwound")
  x = 1 / 0
  Print "never"
End Sub
On Error Resume Next
Failing  ' expect: end unwound
Print Err.Number  ' expect: 11
On Error Goto 0
Set a = Make("ring one") : Set b = Make("ring two")
Set a.Inner = b : Set b.Inner = a
Set a.Inner = Nothing
Set a = Nothing
Set b = Nothing
' expect: end ring two
' expect: end ring one
' SPDX-License-Identifier: GPL-3.0-or-later
