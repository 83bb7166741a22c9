Print Err.Number, Err, Err.Description & "|", Err.Source & "|", Err = 0  ' expect: 0 0 | | True
On Error Resume Next
x = 1 / 0
Print Err.Number, Err, Err.Description, Err.Source  ' expect: 11 11 Division by zero VBScript runtime error
If Err Then Print "set"  ' expect: set
If Err = 11 Then Print "eleven"  ' expect: eleven
n = Err : Print n, IsObject(Err)  ' expect: 11 True
Err.Clear
Print Err.Number, Err.Description & "|", Err.Source & "|"  ' expect: 0 | |
Err.Raise 100, "scale", "too heavy"
Print Err.Number, Err.Source, Err.Description : Err.Clear  ' expect: 100 scale too heavy
Err.Raise 11
Print Err.Number, Err.Description : Err.Clear  ' expect: 11 Division by zero
Err.Raise 999
Print Err.Number, Err.Description : Err.Clear  ' expect: 999 Unknown runtime error
Err.Raise 65535, "s", "d" : Print Err.Number : Err.Clear  ' expect: 65535
Err.Raise vbObjectError + 10, "s", "own" : Print Err.Number, Err.Description : Err.Clear  ' expect: -2147221494 own
Err.Raise 0 : Print Err.Number : Err.Clear  ' expect: 5
Err.Raise 65536 : Print Err.Number : Err.Clear  ' expect: 5
Err.Raise &H8007000E : Print Err.Number : Err.Clear  ' expect: 7
Err.Source = "me" : Err.Description = "mine"
Err.Raise 9 : Print Err.Number, Err.Source, Err.Description : Err.Clear  ' expect: 9 me mine
Err.Raise 9, "s", "d", "help.txt", 12 : Print Err.HelpFile, Err.HelpContext : Err.Clear  ' expect: help.txt 12
Err.Number = 13 : Print Err.Number, Err : Err.Clear  ' expect: 13 13
Sub Check(limit)
  If limit > 5 Then Err.Raise 1234, "Check", "limit is " & limit
  Print "within"
End Sub
Check 3  ' expect: within
x = 1 / 0 : On Error Resume Next : Print Err.Number, Err.Description & "|"  ' expect: 0 |
Check 9
Print Err.Number, Err.Source, Err.Description  ' expect: 1234 Check limit is 9
On Error Goto 0
Print Err.Number, Err.Description & "|"  ' expect: 0 |
Err.Raise 77, "host", "seen by the host"
' ends with error 77 line 35 column 0
' SPDX-License-Identifier: GPL-3.0-or-later
