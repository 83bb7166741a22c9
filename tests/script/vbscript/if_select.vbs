a = 1
If a = 1 Then Print "one" Else Print "other"  ' expect: one
If a = 2 Then Print "no" : Print "neither"
If a = 1 Then Print "x" : Print "y"
' expect: x
' expect: y
If a = 2 Then Print "x" : Print "y" Else Print "else" : Print "more"
' expect: else
' expect: more
If a = 1 Then If a = 2 Then Print "in" Else Print "nearest"  ' expect: nearest
If a = 2 Then If a = 2 Then Print "in" Else Print "never"
If a = 1 Then Print "closed" End If  ' expect: closed
If a = 2 Then Print "no" Else Print "closed too" End If  ' expect: closed too
If a = 2 Then
  Print "no"
ElseIf a = 1 Then
  Print "elseif"  ' expect: elseif
ElseIf 1 / 0 Then
  Print "never asked"
Else
  Print "no"
End If
If a = 1 Then ' nothing at all
End If
If a = 1 Then
  If a = 2 Then
    Print "no"
  Else
    Print "inner else"  ' expect: inner else
  End If
End If
If a = 1 _
   And a < 2 Then
  Print "continued"  ' expect: continued
End If
If a Then Print "not zero"  ' expect: not zero
If Nothing Is Nothing Then Print "is"  ' expect: is
Function Describe(value)
  Select Case value
    Case 1 Describe = "one"
    Case 2, 3, 4
      Describe = "few"
    Case 10 / 2
      Describe = "five"
    Case Else
      Describe = "other"
  End Select
End Function
Print Describe(1), Describe(3), Describe(4), Describe(5), Describe(6)  ' expect: one few few five other
Select Case "y" : Case "x", "y" : Print "letter" : End Select  ' expect: letter
Select Case 2
  Case 1
    Print "no"
  Case 2
    Print "first"  ' expect: first
  Case 2
    Print "second"
End Select
Select Case True
  Case a > 5 : Print "big"
  Case a > 0 : Print "small"  ' expect: small
End Select
Select Case 9
  Case 1 : Print "no"
End Select
asked = 0
Function Ask()
  asked = asked + 1
  Ask = 3
End Function
Select Case Ask()
  Case 1, 2
  Case 3 Print "asked", asked  ' expect: asked 1
End Select
Select Case "b" : Case "a" : Print "a" : Case "b" : Print "line" : End Select  ' expect: line
' What cannot be compared is just not equal.
Function Kind(value)
  Select Case value
    Case 1, 2.5 : Kind = "number"
    Case True : Kind = "truth"
    Case #2/29/2024# : Kind = "day"
    Case "abc" : Kind = "text"
    Case Else : Kind = "else"
  End Select
End Function
Print Kind("1"), Kind("2.5"), Kind("true"), Kind("2/29/2024"), Kind("abc"), Kind("xyz"), Kind("")
' expect: number number truth day text else else
Print Kind(Array(1)), Kind(Null), Kind(Empty)  ' expect: else else else
Select Case "x" : Case 1 : Print "no" : Case Array(1) : Print "no" : Case Else : Print "else" : End Select  ' expect: else
' SPDX-License-Identifier: GPL-3.0-or-later
