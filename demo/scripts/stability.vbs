' SPDX-License-Identifier: GPL-3.0-or-later
' Judges for itself whether the weight stands still, and compares that with what the instrument says.
'
' Number box 0: how many weights are looked at. Number box 1: by how many grams they may differ.
' Lamp 0 is green while they stay within that, lamp 1 while the instrument says "ST". Each change is
' written into the display.
Option Explicit

Const Green = &H00C000&, Red = &H0000FF&  ' colours are blue-green-red
Dim recent   ' the last weights in grams, as a text with blanks between: "12345 12346 12345"
Dim wasCalm

Sub InitTask()
  If FrmCommand.TextIO(0).Text = "" Then FrmCommand.TextIO(0).Text = "8"
  If FrmCommand.TextIO(1).Text = "" Then FrmCommand.TextIO(1).Text = "3"
  recent = ""
  wasCalm = False
  ShowLamp 0, False
  ShowLamp 1, False
End Sub

Sub ReceiveString()
  Dim line, calm
  line = StringReceived.InputString
  StringReceived.OutputString = line
  If Mid(line, 6, 1) <> "," Or Not IsNumeric(Mid(line, 7, 10)) Then Exit Sub

  Remember CLng(CDbl(Mid(line, 7, 10)) * GramsPer(Trim(Mid(line, 18, 2))))
  calm = StandsStill()
  ShowLamp 0, calm
  ShowLamp 1, Left(line, 2) = "ST"
  If calm <> wasCalm Then Report calm, line
  wasCalm = calm
End Sub

Function GramsPer(unit)
  Select Case unit
    Case "kg" : GramsPer = 1000
    Case "lb" : GramsPer = 453.59237
    Case Else : GramsPer = 1
  End Select
End Function

Sub Remember(grams)
  Dim parts, first
  recent = Trim(recent & " " & grams)
  parts = Split(recent)
  first = UBound(parts) + 1 - NumberIn(0, 8)
  If first > 0 Then recent = Split(recent, " ", first + 1)(first)
End Sub

' All weights are there and the largest and the smallest are close together.
Function StandsStill()
  Dim parts, part, low, high
  parts = Split(recent)
  low = CLng(parts(0))
  high = low
  For Each part In parts
    If CLng(part) < low Then low = CLng(part)
    If CLng(part) > high Then high = CLng(part)
  Next
  StandsStill = UBound(parts) + 1 >= NumberIn(0, 8) And high - low <= NumberIn(1, 3)
End Function

' What a number box says, or something usable when it says nothing of the kind.
Function NumberIn(box, otherwise)
  NumberIn = otherwise
  If Not IsNumeric(FrmCommand.TextIO(box).Text) Then Exit Function
  If CDbl(FrmCommand.TextIO(box).Text) >= 1 And CDbl(FrmCommand.TextIO(box).Text) <= 10000 Then
    NumberIn = CLng(FrmCommand.TextIO(box).Text)
  End If
End Function

Sub ShowLamp(number, lit)
  If lit Then
    FrmCommand.ShpOutput(number).FillColor = Green
  Else
    FrmCommand.ShpOutput(number).FillColor = Red
  End If
End Sub

Sub Report(calm, line)
  If calm Then
    AppendLog.RichAppendText Green, "stands still at " & Trim(Mid(line, 7, 13)) & vbCrLf
  Else
    AppendLog.RichAppendText Red, "moves" & vbCrLf
  End If
End Sub
