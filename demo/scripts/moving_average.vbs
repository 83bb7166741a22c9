' SPDX-License-Identifier: GPL-3.0-or-later
' Shows the average of the last weights beside each weight that comes in.
'
' Copy this file into the program folder, switch "script" on, pick it and check "Show Command". The number
' of weights to average stands in the first number box of the panel; the average is shown in its output box
' and in blue in the display.
Option Explicit

Dim history()   ' the last weights; the oldest is overwritten by the next
Dim filled      ' how many of them are there so far
Dim nextPlace   ' where the next one goes

Sub InitTask()
  If Not IsNumeric(FrmCommand.TextIO(0).Text) Then FrmCommand.TextIO(0).Text = "10"
  StartAgain
End Sub

' Runs for every complete answer. What stands in OutputString afterwards is what the program goes on with.
Sub ReceiveString()
  StringReceived.OutputString = StringReceived.InputString
  Dim weight
  weight = WeightIn(StringReceived.InputString)
  If IsEmpty(weight) Then Exit Sub

  If UBound(history) <> Wanted() - 1 Then StartAgain
  Remember weight
  FrmCommand.txtOutput.Text = FormatNumber(Average(), 3)
  AppendLog.RichAppendText vbBlue, "average of " & filled & ": " & FormatNumber(Average(), 3) & vbCrLf
End Sub

' The weight in a line such as "ST,GS,+00012.345 kg", or Empty when there is none.
Function WeightIn(line)
  Dim digits
  digits = Mid(line, 7, 10)
  If Mid(line, 6, 1) = "," And IsNumeric(digits) Then WeightIn = CDbl(digits)
End Function

' The number in the box, kept between 1 and 1000.
Function Wanted()
  Wanted = 10
  If IsNumeric(FrmCommand.TextIO(0).Text) Then Wanted = CDbl(FrmCommand.TextIO(0).Text)
  If Wanted < 1 Then Wanted = 1
  If Wanted > 1000 Then Wanted = 1000
  Wanted = CLng(Wanted)
End Function

Sub StartAgain()
  ReDim history(Wanted() - 1)
  filled = 0
  nextPlace = 0
End Sub

Sub Remember(weight)
  history(nextPlace) = weight
  nextPlace = (nextPlace + 1) Mod (UBound(history) + 1)
  If filled <= UBound(history) Then filled = filled + 1
End Sub

Function Average()
  Dim sum, i
  For i = 0 To filled - 1
    sum = sum + history(i)
  Next
  Average = sum / filled
End Function
