Set re = New RegExp
Print re.Global, re.IgnoreCase, re.Multiline, re.Pattern & "|"  ' expect: False False False |
re.Pattern = "(\d+)\.(\d+)?"
Print re.Test("a 12.5 b 7. c"), re.Test("none"), re.Execute("none").Count  ' expect: True False 0
Set found = re.Execute("a 12.5 b 7. c")
Set m = found(0)
Print found.Count, m.Value, m, m.FirstIndex, m.Length, m.SubMatches(0), m.SubMatches(1), m.SubMatches.Count  ' expect: 1 12.5 12.5 2 4 12 5 2
re.Global = True
Set found = re.Execute("a 12.5 b 7. c")
Print found.Count, found.Item(1).Value, IsEmpty(found(1).SubMatches(1)), found(1).SubMatches(1) & "|"  ' expect: 2 7. True |
For Each m In found : Print m.FirstIndex, m : Next
' expect: 2 12.5
' expect: 9 7.
Print re.Replace("1.2 3.4", "$2.$1"), re.Replace("1.2", "[$&]"), re.Replace("1.2", "$$"), re.Replace("1.2", "$3")  ' expect: 2.1 4.3 [1.2] $ $3
re.Global = False
Print re.Replace("1.2 3.4", "x"), re.Replace("none", "x")  ' expect: x 3.4 none
Set re = CreateObject("VBScript.RegExp")
re.Global = True
re.Pattern = "^\w+$"
Print re.Execute("ab" & vbLf & "cd").Count  ' expect: 0
re.Multiline = True
Print re.Execute("ab" & vbLf & "cd").Count  ' expect: 2
re.Pattern = "a.c"
Print re.Test("a" & vbLf & "c"), re.Test("abc"), re.Test("ABC")  ' expect: False True False
re.IgnoreCase = True
Print re.Test("ABC"), re.Replace("xABCabcx", "-")  ' expect: True x--x
re.Pattern = ""
Print re.Execute("abc").Count, re.Replace("ab", "-")  ' expect: 4 -a-b-
re.Pattern = "(a|b)\1" : Print re.Test("abb"), re.Test("ab")  ' expect: True False
re.Pattern = "<.+?>" : Print re.Replace("<b>x</b>", "")  ' expect: x
re.Pattern = "q(?=u)" : Print re.Replace("qu qa", "k")  ' expect: ku qa
re.Pattern = "[^\x41-\x43\s]" : Print re.Replace("ABCD E", "")  ' expect: ABC
re.Pattern = "\u00e9" : Print re.Test(ChrW(233))  ' expect: True
re.Pattern = "^(ST|US),(GS|NT),([+-]\d+\.\d+) *(kg|g|lb)$"
Set m = re.Execute("ST,GS,+00012.345 kg")(0)
Print m.SubMatches(0), CDbl(m.SubMatches(2)), m.SubMatches(3)  ' expect: ST 12.345 kg
On Error Resume Next
re.Pattern = "(" : x = re.Test("a") : Print Err.Number >= 5017 And Err.Number <= 5021 : Err.Clear  ' expect: True
re.Pattern = "[b-a]" : x = re.Test("a") : Print Err.Number >= 5017 And Err.Number <= 5021 : Err.Clear  ' expect: True
re.Pattern = "*a" : x = re.Test("a") : Print Err.Number >= 5017 And Err.Number <= 5021 : Err.Clear  ' expect: True
' SPDX-License-Identifier: GPL-3.0-or-later
