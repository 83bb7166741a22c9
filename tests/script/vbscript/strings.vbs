' Positions and counts are rounded, half to even; what lies outside is cut off or refused.
Print Left("abc", 2), Left("abc", 2.5), Left("abc", 0) & "|", Left("abc", 99), Left(12345, 2)  ' expect: ab ab | abc 12
Print Right("abc", 2), Right("abc", 1.5), Right("abc", 0) & "|", Right("abc", 99), Right(True, 2)  ' expect: bc bc | abc ue
Print Mid("abc", 2), Mid("abc", 2, 1), Mid("abc", 4) & "|", Mid("abc", 2, 0) & "|", Mid("abc", 2, 99)  ' expect: bc b | | bc
Print Mid("abcdef", 2.5, 1.5), Mid("abc", "2"), Mid(12345, 2, 3)  ' expect: bc bc 234
Print Len("abc"), Len(""), Len(Empty), Len(12.5), Len(True), LenB("abc")  ' expect: 3 0 0 4 4 6
Print IsNull(Len(Null)), IsNull(Left(Null, 1)), IsNull(Mid(Null, 1)), IsNull(UCase(Null)), IsNull(Trim(Null))  ' expect: True True True True True
Print UCase("aBc1"), LCase("aBc1"), UCase(ChrW(233)) = ChrW(201), LCase(ChrW(201)) = ChrW(233)  ' expect: ABC1 abc1 True True
Print "[" & Trim("  a b  ") & "]", "[" & LTrim("  a ") & "]", "[" & RTrim(" a  ") & "]"  ' expect: [a b] [a ] [ a]
Print Len(Trim(vbTab & "a" & vbTab)), Len(Trim(vbCrLf)), Len(Trim("   "))  ' expect: 3 2 0
Print InStr("abcabc", "c"), InStr(4, "abcabc", "a"), InStr("abc", "z"), InStr("", "a"), InStr("abc", "C")  ' expect: 3 4 0 0 0
Print InStr(1, "aBc", "b", 1), InStr(1, "aBc", "b", vbBinaryCompare), InStr(2.5, "abcb", "b")  ' expect: 2 0 2
Print InStr("abc", ""), InStr(3, "abc", ""), InStr(9, "abc", ""), InStr(9, "abc", "a")  ' expect: 1 3 0 0
Print IsNull(InStr(Null, "a")), IsNull(InStr("a", Null)), InStr(1234, 3)  ' expect: True True 3
Print InStrRev("abcabc", "b"), InStrRev("abcabc", "b", 4), InStrRev("abcabc", "b", 9), InStrRev("abc", "z")  ' expect: 5 2 0 0
Print InStrRev("abc", ""), InStrRev("aBc", "b", -1, 1), InStrRev("abcabc", "bc", 2), InStrRev("abcabc", "bc", 3)  ' expect: 3 2 0 2
Print StrComp("a", "b"), StrComp("b", "a"), StrComp("a", "a"), StrComp("a", "A"), StrComp("a", "A", 1)  ' expect: -1 1 0 1 0
Print IsNull(StrComp(Null, "a")), StrReverse("abc"), StrReverse("") & "|"  ' expect: True cba |
Print String(3, "x"), String(3, "xy"), String(2, 65), String(0, "a") & "|", "[" & Space(3) & "]"  ' expect: xxx xxx AA | [   ]
Print Asc("A"), Asc("AB"), AscW(ChrW(8364)), Chr(65), ChrW(937) = ChrW(&H3A9), AscW(ChrW(65535))  ' expect: 65 65 8364 A True -1
Print Chr(233) = ChrW(233), Asc(Chr(13)), Len(vbCrLf), Len(vbNullString), vbTab = Chr(9), vbLf = Chr(10)  ' expect: True 13 2 0 True True
Print Escape("a b+" & ChrW(233) & "_@1"), Escape(ChrW(8364)), Unescape("%u20AC%41%") = ChrW(8364) & "A%"  ' expect: a%20b+%E9_@1 %u20AC True
s = "x"
For i = 1 To 4 : s = s & s : Next
Print Len(s), s = String(16, "x")  ' expect: 16 True
t = s
s = s & "y"
Print Len(t), Len(s)  ' expect: 16 17
On Error Resume Next
x = Left("abc", -1) : Print Err.Number : Err.Clear  ' expect: 5
x = Right("abc", -1) : Print Err.Number : Err.Clear  ' expect: 5
x = Mid("abc", 0) : Print Err.Number : Err.Clear  ' expect: 5
x = Mid("abc", 1, -1) : Print Err.Number : Err.Clear  ' expect: 5
x = InStr(0, "abc", "a") : Print Err.Number : Err.Clear  ' expect: 5
x = String(-1, "a") : Print Err.Number : Err.Clear  ' expect: 5
x = Space(-1) : Print Err.Number : Err.Clear  ' expect: 5
x = Asc("") : Print Err.Number : Err.Clear  ' expect: 5
x = Chr(256) : Print Err.Number : Err.Clear  ' expect: 5
x = StrReverse(Null) : Print Err.Number : Err.Clear  ' expect: 94
x = Left("abc", Null) : Print Err.Number : Err.Clear  ' expect: 94
x = Len(Array(1)) : Print Err.Number : Err.Clear  ' expect: 13
x = Left("abc") : Print Err.Number : Err.Clear  ' expect: 450
' SPDX-License-Identifier: GPL-3.0-or-later
