' Numbers, money and dates as countries write them.
Print GetLocale(), SetLocale("de-DE"), SetLocale(2057), SetLocale("1036"), SetLocale(1034), GetLocale()  ' expect: 1033 1033 1031 2057 1036 3082
Print SetLocale(0), SetLocale(1031), SetLocale(), GetLocale()  ' expect: 3082 1033 1031 1033
On Error Resume Next
For Each wrong In Array("xx-xx", 1032, "9999999999", "")
  SetLocale wrong : Print Err.Number, GetLocale() : Err.Clear
Next
' expect: 447 1033
' expect: 447 1033
' expect: 447 1033
' expect: 447 1033

Function Tried(text)
  On Error Resume Next
  Tried = "error"
  Tried = CStr(CDbl(text))
  If Err.Number <> 0 Then Tried = "error " & Err.Number
End Function
Sub Show(texts)
  For Each text In texts : Print text, "is", IsNumeric(text), Tried(text) : Next
End Sub

' A comma is what a German writes in front of a fraction; points group digits wherever they stand.
SetLocale "de-de"
Print 12.5, -0.5, 1E+20, 1.5E-16, CSng(2.5), CCur(3.25), "x" & 1.5, CStr(2.5), 1 / 4  ' expect: 12,5 -0,5 1E+20 1,5E-16 2,5 3,25 x1,5 2,5 0,25
Show Array("12,5", " -12,5 ", "1.234,5", "12.5", "(1,5)", "1,5-", "2,5 €", "$5", "1,5e3", "1,2,3", "&HFF")
' expect: 12,5 is True 12,5
' expect:  -12,5  is True -12,5
' expect: 1.234,5 is True 1234,5
' expect: 12.5 is True 125
' expect: (1,5) is True -1,5
' expect: 1,5- is True -1,5
' expect: 2,5 € is True 2,5
' expect: $5 is False error 13
' expect: 1,5e3 is True 1500
' expect: 1,2,3 is False error 13
' expect: &HFF is True 255
Print "1,5" + 1, "2,5" * 2, CInt("2,5"), CCur("1.000,25"), Round("2,75", 1), CBool("0,5"), "1,5" = 1.5  ' expect: 2,5 5 2 1000,25 2,8 True True
half = "0,5" : Print half < 0.6, -half, Int("1,9")  ' expect: True -0,5 1
Print FormatNumber(-1234567.891), FormatNumber(0.5, 1, False), FormatNumber(-2, 0, , True), FormatPercent(0.256)  ' expect: -1.234.567,89 ,5 (2) 25,60%
Print FormatCurrency(1234.5), FormatCurrency(-5), FormatCurrency(-5, 0, , True), FormatCurrency(5, , , , False)  ' expect: 1.234,50 € -5,00 € (5 €) 5,00 €
' The script's own text stays as it is.
Print Eval("1.5 + 1"), #2/3/2024#, CDate("2/3/2024"), &HFF  ' expect: 2,5 03.02.2024 02.03.2024 255

when = #2/29/2024 13:45:30#
Sub Dates(name)
  SetLocale name
  Print when, "|", FormatDateTime(when, 1), "|", FormatDateTime(when, 2), "|", FormatDateTime(when, 3), "|", FormatDateTime(when, 4)
  For Each text In Array(CStr(when), FormatDateTime(when, 1) & " 13:45:30", "29 feb 2024 1:45:30 pm", "2024-02-29 13:45:30")
    If CDate(text) <> when Then Print "misread", text, CDate(text)
  Next
  Print MonthName(2), MonthName(3, True), WeekdayName(1), WeekdayName(7, True), CDate("3/4"), DateValue("1-2-99"), IsDate("29.2.2024")
End Sub
Dates "en-us"
' expect: 2/29/2024 1:45:30 PM | Thursday, February 29, 2024 | 2/29/2024 | 1:45:30 PM | 13:45
' expect: February Mar Sunday Sat 3/4/2024 1/2/1999 False
Dates "en-gb"
' expect: 29/02/2024 13:45:30 | 29 February 2024 | 29/02/2024 | 13:45:30 | 13:45
' expect: February Mar Sunday Sat 03/04/2024 01/02/1999 True
Dates "de-de"
' expect: 29.02.2024 13:45:30 | Donnerstag, 29. Februar 2024 | 29.02.2024 | 13:45:30 | 13:45
' expect: Februar Mrz Sonntag Sa 03.04.2024 01.02.1999 True
Dates "fr-fr"
' expect: 29/02/2024 13:45:30 | jeudi 29 février 2024 | 29/02/2024 | 13:45:30 | 13:45
' expect: février mars dimanche sam. 03/04/2024 01/02/1999 True
Dates "it-it"
' expect: 29/02/2024 13:45:30 | giovedì 29 febbraio 2024 | 29/02/2024 | 13:45:30 | 13:45
' expect: febbraio mar domenica sab 03/04/2024 01/02/1999 True
Dates "es-es"
' expect: 29/02/2024 13:45:30 | jueves, 29 de febrero de 2024 | 29/02/2024 | 13:45:30 | 13:45
' expect: febrero mar domingo sáb 03/04/2024 01/02/1999 True
Dates "nl-nl"
' expect: 29-2-2024 13:45:30 | donderdag 29 februari 2024 | 29-2-2024 | 13:45:30 | 13:45
' expect: februari mrt zondag za 3-4-2024 1-2-1999 True
Dates "pl-pl"
' expect: 29.02.2024 13:45:30 | czwartek, 29 lutego 2024 | 29.02.2024 | 13:45:30 | 13:45
' expect: luty mar niedziela sob. 03.04.2024 01.02.1999 True
Print CDate("3 paź 2024"), CDate("3. października 2024"), IsDate("3 xyz 2024"), IsDate("3 .. 2024")  ' expect: 03.10.2024 03.10.2024 False False
SetLocale "de-de"
Print CDate("29.2."), CDate("29. Feb. 8:30"), CDate("1. März 2024, 8:30"), IsDate("29.2.2023"), TimeValue("13:45")  ' expect: 29.02.2024 29.02.2024 08:30:00 01.03.2024 08:30:00 False 13:45:00
Print DateDiff("d", "1.2.2024", "1.3.2024"), Month("3.4.2024"), Weekday("29.02.2024", 0), Weekday("29.02.2024"), DateAdd("m", 1, "31.01.2024")  ' expect: 29 4 4 5 29.02.2024

' A French thousands separator is a no-break space; a plain or narrow one is read, too.
SetLocale "fr-fr"
Print Replace(FormatNumber(-1234567.5), ChrW(160), "_"), FormatCurrency(-2.5), CDbl("1 234,5"), CDbl("1" & ChrW(160) & "234" & ChrW(&H202F) & "567,5"), CDbl("2,5" & ChrW(160) & "€"), IsNumeric("1 ,5")
' expect: -1_234_567,50 -2,50 € 1234,5 1234567,5 2,5 False
SetLocale "nl-nl" : Print FormatCurrency(-2.5), FormatCurrency(2.5), CDbl("€ 2,5"), CDbl("€ -2,5")  ' expect: € -2,50 € 2,50 2,5 -2,5
SetLocale "pl-pl" : Print FormatCurrency(-2.5), CDbl("2,5 zł"), IsNumeric("2,5 z")  ' expect: -2,50 zł 2,5 False
SetLocale "en-gb" : Print FormatCurrency(-1234.5), CDbl("£1,234.5"), 1.5  ' expect: -£1,234.50 1234.5 1.5

' What an object does on behalf of the script follows it, and a choice in a procedure stays.
Class Chooser
  Sub Class_Initialize : SetLocale 1031 : End Sub
  Sub Class_Terminate : Print "gone", 2.5 : End Sub
End Class
Set c = New Chooser : Print 1.5  ' expect: 1,5
SetLocale "en-us"
Set c = Nothing  ' expect: gone 2.5
' SPDX-License-Identifier: GPL-3.0-or-later
