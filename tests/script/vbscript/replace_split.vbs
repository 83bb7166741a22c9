Print Replace("aXbX", "X", "-"), Replace("aXbX", "X", "-", 1, 1), Replace("aXbX", "X", "-", 3)  ' expect: a-b- a-bX b-
Print Replace("aXbx", "x", "-", 1, -1, 1), Replace("aXbx", "x", "-"), Replace("abc", "", "x")  ' expect: a-b- aXb- abc
Print Replace("abc", "b", ""), Replace("abc", "b", "x", 9) & "|", Replace("", "a", "b") & "|", Replace("abc", "b", "x", 1, 0)  ' expect: ac | | abc
Print Replace("aaa", "aa", "b"), Replace("a.b", ".", ".."), Replace(1.5, ".", ","), Replace("aa", "a", "aa")  ' expect: ba a..b 1,5 aaaa
Sub Show(parts)
  Print UBound(parts), Join(parts, "|")
End Sub
Show Split("a b c")  ' expect: 2 a|b|c
Show Split("a,,b", ",")  ' expect: 2 a||b
Show Split(",", ",")  ' expect: 1 |
Show Split("abc", "")  ' expect: 0 abc
Show Split("", ",")  ' expect: -1
Show Split("a,b,c", ",", 2)  ' expect: 1 a|b,c
Show Split("a,b,c", ",", -1)  ' expect: 2 a|b|c
Show Split("aXbxc", "x", -1, 1)  ' expect: 2 a|b|c
Show Split("aXbxc", "x")  ' expect: 1 aXb|c
Show Split("1--2--3", "--")  ' expect: 2 1|2|3
Print TypeName(Split("1,2", ",")(0)), Split("a,b", ",")(1)  ' expect: String b
Print Join(Array("a", 1, True)), Join(Array(), "x") & "|", Join(Array(1, 2), ""), Join(Array(1, 2), ", ")  ' expect: a 1 True | 12 1, 2
words = Array("scale", "Scale", "meter", "mescal")
Show Filter(words, "scal")  ' expect: 1 scale|mescal
Show Filter(words, "scal", False)  ' expect: 1 Scale|meter
Show Filter(words, "SCAL", True, 1)  ' expect: 2 scale|Scale|mescal
Show Filter(words, "none")  ' expect: -1
Print TypeName(words), TypeName(Split("a")), VarType(words), IsArray(words), IsArray("a")  ' expect: Variant() Variant() 8204 True False
On Error Resume Next
x = Replace(Null, "a", "b") : Print Err.Number : Err.Clear  ' expect: 94
x = Replace("a", "a", "b", 0) : Print Err.Number : Err.Clear  ' expect: 5
x = Join(5) : Print Err.Number : Err.Clear  ' expect: 13
x = Filter("a", "a") : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
