' A number and a text meet by where they stand: in a variable or as a literal.
n = 5 : s = "5" : w = "abc" : big = 1000000
Print n = s, n < s, s > n, big < w, big < s, n <> s  ' expect: False True True True True True
Print n = "5", n = "5.0", s = 5, s < 6, s = 5.0, "10" < n  ' expect: True False True True True True
Print n = 5, n < 5.5, n >= 5, n <= 4, n <> 5  ' expect: True True True False False
Print "Z" < "a", "a" = "A", "abc" < "abd", "" < "a", "10" < "9", "a" < "ab"  ' expect: True False True True True True
Print w = "abc", w > "ABC", w = w, s & "" = s  ' expect: True True True True
Print Empty = 0, Empty = "", Empty = "0", Empty = False, Empty = Empty  ' expect: True True False True True
Print True = -1, True < False, True = 1, False = 0, (1 = 1) = True  ' expect: True True False True True
Print Null = Null, Null <> 1, 1 < Null, "" = Null  ' expect: Null Null Null Null
Print 1 = 1.0, CByte(1) = 1, CCur(1.5) = 1.5, 0.5 = CSng(0.5), 32768 > 32767  ' expect: True True True True True
Print #1/1/2024# < #1/2/2024#, #1/1/2024# = 45292, #2/29/2024# = DateSerial(2024, 2, 29)  ' expect: True True True
Print 3 > 2 = True, 1 < 2 <> False, 1 + 1 <= 2, 2 * 3 >= 7  ' expect: True True True False
Dim nothingYet
Print nothingYet = 0, nothingYet = "", IsEmpty(nothingYet)  ' expect: True True True
Set a = CreateObject("Scripting.Dictionary")
Set b = a
Set c = CreateObject("Scripting.Dictionary")
Print a Is b, a Is c, Not a Is c, Nothing Is Nothing, a Is Nothing  ' expect: True False True True False
On Error Resume Next
x = (w = 5) : Print Err.Number : Err.Clear  ' expect: 13
x = (w < 5) : Print Err.Number : Err.Clear  ' expect: 13
x = 1 Is 2 : Print Err.Number : Err.Clear  ' expect: 424
x = (Array(1) = 1) : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
