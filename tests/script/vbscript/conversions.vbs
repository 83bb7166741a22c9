' Whole numbers are rounded half to even.
Print CInt(2.5), CInt(3.5), CInt(-2.5), CInt("3.6"), CInt(True), CInt(Empty)  ' expect: 2 4 -2 4 -1 0
Print CLng(2147483647.4), CLng(0.5), CLng("&H10"), CByte(254.5), CByte("7")  ' expect: 2147483647 0 16 254 7
Print CDbl(" 5 "), CDbl("1,234.5"), CDbl("$5"), CDbl("(5)"), CDbl("5-"), CDbl("1e3")  ' expect: 5 1234.5 5 -5 -5 1000
Print CDbl("-5"), CDbl("+5"), CDbl(".5"), CDbl("&H10"), CDbl("&O17"), CDbl(True)  ' expect: -5 5 0.5 16 15 -1
Print CBool("True"), CBool("false"), CBool("0"), CBool("5"), CBool(0.1), CBool(Empty)  ' expect: True False False True True False
Print CStr(True), CStr(1.0), CStr(Empty) & "|", CStr(#2/29/2024#), TypeName(CStr(5))  ' expect: True 1 | 2/29/2024 String
Print TypeName(CByte(1)), TypeName(CInt(1)), TypeName(CLng(1)), TypeName(CSng(1)), TypeName(CDbl(1)), TypeName(CCur(1)), TypeName(CDate(1))  ' expect: Byte Integer Long Single Double Currency Date
Print IsNumeric("1,234"), IsNumeric("&H10"), IsNumeric("$5"), IsNumeric("(5)"), IsNumeric("5-"), IsNumeric(" 5 ")  ' expect: True True True True True True
Print IsNumeric(""), IsNumeric(Empty), IsNumeric(Null), IsNumeric("abc"), IsNumeric("5x"), IsNumeric("1e5"), IsNumeric(True)  ' expect: False True False False False True True
Print IsNumeric("-"), IsNumeric("."), IsNumeric("1.2.3"), IsNumeric(#1/1/2024#), IsNumeric(Array(1))  ' expect: False False False False False
Print Int(2.7), Int(-2.5), Fix(-2.5), Fix(2.7), Int("3.7"), TypeName(Int(2.5)), TypeName(Int(5))  ' expect: 2 -3 -2 2 3 Double Integer
Print Round(2.5), Round(3.5), Round(-2.5), Round(0.125, 2), Round(1.27, 1), Round("2.5"), Round(7, 2)  ' expect: 2 4 -2 0.12 1.3 2 7
Print TypeName(Round(2.5)), TypeName(Round(5)), TypeName(Round(CCur(2.55), 1)), TypeName(Round(CSng(1.5)))  ' expect: Double Integer Currency Single
Print Abs(-5), Abs(5.5), TypeName(Abs(-5)), Abs("-3"), Sgn(-2), Sgn(0), Sgn(0.1), TypeName(Sgn(5.5))  ' expect: 5 5.5 Integer 3 -1 0 1 Integer
Print Abs(-32768), IsNull(Abs(Null)), IsNull(Int(Null))  ' expect: 32768 True True
Print Sqr(16), Exp(0), Log(1), Atn(1) * 4, Sin(0), Cos(0), Tan(0), Log(Exp(2))  ' expect: 4 1 0 3.14159265358979 0 1 0 2
Print Hex(2.5), Hex("17"), IsNull(Hex(Null)), Hex(Empty), Hex(CLng(-1)), Oct("9"), Hex(True)  ' expect: 2 11 True 0 FFFFFFFF 11 FFFF
Print RGB(255, 128, 0), RGB(300, 0, 0), RGB(0, 0, 255), vbRed, vbBlue  ' expect: 33023 255 16711680 255 16711680
Print TypeName(Empty), TypeName(Null), TypeName(Nothing), TypeName("a"), TypeName(#1:00#), TypeName(True)  ' expect: Empty Null Nothing String Date Boolean
Print VarType(Empty), VarType(Null), VarType(1), VarType(100000), VarType(CSng(1)), VarType(1.5)  ' expect: 0 1 2 3 4 5
Print VarType(CCur(1)), VarType(#1:00#), VarType("a"), VarType(Nothing), VarType(True), VarType(CByte(1))  ' expect: 6 7 8 9 11 17
Print TypeName(CreateObject("Scripting.Dictionary")), TypeName(Array(1)), IsObject(Nothing), IsObject(5)  ' expect: Dictionary Variant() True False
Print IsEmpty(undeclared), IsEmpty(""), IsEmpty(0), IsNull(Null), IsNull(Empty), IsNull("")  ' expect: True False False True False False
Print vbString, vbArray + vbVariant, vbTrue, vbFalse, vbUseDefault, vbObjectError, vbTextCompare  ' expect: 8 8204 -1 0 -2 -2147221504 1
Print ScriptEngine, GetLocale(), MsgBox("Go on?", vbYesNo + vbQuestion, "Test")
' expect: box Go on? 36 Test
' expect: VBScript 1033 6
MsgBox 12.5, , "Plain"  ' expect: box 12.5 0 Plain
Print InputBox("Name?", "Ask", "proposal"), IsEmpty(InputBox("Name?", "Ask", ""))
' expect: ask Name? Ask proposal
' expect: ask Name? Ask
' expect: proposal True
On Error Resume Next
Sub Wrong(text)
  On Error Resume Next
  x = Eval(text)
  Print Err.Number, text
End Sub
Wrong "CInt(32768)"  ' expect: 6 CInt(32768)
Wrong "CInt(""abc"")"  ' expect: 13 CInt("abc")
Wrong "CLng(2147483648)"  ' expect: 6 CLng(2147483648)
Wrong "CByte(256)"  ' expect: 6 CByte(256)
Wrong "CByte(-1)"  ' expect: 6 CByte(-1)
Wrong "CDbl("""")"  ' expect: 13 CDbl("")
Wrong "CBool(""abc"")"  ' expect: 13 CBool("abc")
Wrong "CSng(1E39)"  ' expect: 6 CSng(1E39)
Wrong "CCur(1E15)"  ' expect: 6 CCur(1E15)
Wrong "CStr(Null)"  ' expect: 94 CStr(Null)
Wrong "CInt(Null)"  ' expect: 94 CInt(Null)
Wrong "CDate(Null)"  ' expect: 94 CDate(Null)
Wrong "CBool(Null)"  ' expect: 94 CBool(Null)
Wrong "CInt(Nothing)"  ' expect: 91 CInt(Nothing)
Wrong "CStr(Array(1))"  ' expect: 13 CStr(Array(1))
Wrong "Sqr(-1)"  ' expect: 5 Sqr(-1)
Wrong "Log(0)"  ' expect: 5 Log(0)
Wrong "Exp(1000)"  ' expect: 6 Exp(1000)
Wrong "Round(1234, -1)"  ' expect: 5 Round(1234, -1)
Wrong "Hex(1E10)"  ' expect: 6 Hex(1E10)
Wrong "RGB(-1, 0, 0)"  ' expect: 5 RGB(-1, 0, 0)
Wrong "Abs(""x"")"  ' expect: 13 Abs("x")
Wrong "CreateObject(""No.Such"")"  ' expect: 429 CreateObject("No.Such")
' SPDX-License-Identifier: GPL-3.0-or-later
