' And, Or and their kin work on bits, know Null, and look at both sides.
Print 6 And 3, 6 Or 3, 6 Xor 3, 5 Eqv 3, 5 Imp 3, Not 5  ' expect: 2 7 5 -7 -5 -6
Print "5" And 3, Not "5", "1" Or "2", 2.5 And 3, 3.5 Or 0  ' expect: 1 -6 3 2 4
Print True And False, True Or False, True Xor True, True Eqv False, True Imp False  ' expect: False True False False False
Print TypeName(True And True), TypeName(True And 1), TypeName(1 And 100000), TypeName(Not True)  ' expect: Boolean Integer Long Boolean
Print 1 And 2, True And 2, Not 0, Not -1, Empty Or 4  ' expect: 0 2 -1 0 4
Print False And Null, Null And False, True And Null, Null And Null  ' expect: False False Null Null
Print True Or Null, Null Or True, False Or Null, Null Or Null  ' expect: True True Null Null
Print Not Null, Null Xor True, Null Eqv True  ' expect: Null Null Null
Print False Imp Null, Null Imp True, True Imp Null, Null Imp False, Null Imp Null  ' expect: True True Null Null Null
Print True Or False And False, 1 Or 2 And 4, 3 Xor 1 Or 2, False Imp False Eqv False  ' expect: True 1 0 True
Print Not 1 = 2, Not False And False, 1 + 1 = 2 And 2 > 1, 1 & 2 & 3  ' expect: True False True 123
Print 2 + 3 & 4 + 5, "a" & 1.5, "x" & True, 1 & 2, TypeName(1 & 2)  ' expect: 59 a1.5 xTrue 12 String
Print "1" + "2", "1" + 2, TypeName("1" + 2), "a" + "b", 1 + "2" & "3"  ' expect: 12 3 Double ab 33
Print Null & "a", "a" & Null, IsNull(Null & Null), Empty & "b", TypeName(Empty & Empty)  ' expect: a a True b String
calls = 0
Function Counted(result)
  calls = calls + 1
  Counted = result
End Function
x = Counted(False) And Counted(False)
x = Counted(True) Or Counted(True)
Print calls  ' expect: 4
If Null Then Print "then" Else Print "else"  ' expect: else
If Not (Null = 1) Then Print "then" Else Print "else"  ' expect: else
If "True" Then Print "text true"  ' expect: text true
If 0.1 Then Print "fraction" Else Print "none"  ' expect: fraction
On Error Resume Next
x = "a" And 1 : Print Err.Number : Err.Clear  ' expect: 13
x = 3000000000 And 1 : Print Err.Number : Err.Clear  ' expect: 6
' SPDX-License-Identifier: GPL-3.0-or-later
