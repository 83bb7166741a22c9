' SPDX-License-Identifier: GPL-3.0-or-later
' Asks for a weight four times a second and keeps the figures of all of them on the panel.
'
' Switch 0: ask. Switch 1: begin again (it springs back). The number boxes show how many, smallest, largest,
' mean, standard deviation, last, answers that were no weight, and the errors that the main window has
' counted. Lamp 0 is green after a stable weight, yellow while it settles, red after an answer without one.
' Leave the cycle of the main window stopped while switch 0 is on.
Option Explicit

Dim count, smallest, largest, mean, squares, last, others

Sub InitTask()
  StartAgain
  FrmCommand.FrameText.Caption = "0 count  1 smallest  2 largest  3 mean  " & _
                                 "4 deviation  5 last  6 no weight  7 errors"
  FrmCommand.ChkInput(0).Caption = "ask"
  FrmCommand.ChkInput(1).Caption = "new"
  FrmCommand.ChkInput(0).Value = 1
  TimerTask.Interval = 250  ' milliseconds between two calls of Task
End Sub

Sub Task()
  If FrmCommand.ChkInput(1).Value = 1 Then
    StartAgain
    FrmCommand.ChkInput(1).Value = 0
  End If
  ' What is put here is sent as soon as Task has come to its end.
  If FrmCommand.ChkInput(0).Value = 1 Then TimerTask.SendString = "READ" & vbCr
  ShowFigures
End Sub

Sub ReceiveString()
  Dim line
  line = StringReceived.InputString
  StringReceived.OutputString = line
  If Mid(line, 6, 1) = "," And IsNumeric(Mid(line, 7, 10)) Then
    Add CDbl(Mid(line, 7, 10))
    If Left(line, 2) = "ST" Then ShowLamp vbGreen Else ShowLamp vbYellow
  Else
    others = others + 1
    ShowLamp vbRed
  End If
End Sub

' The mean and the sum of squared differences are carried along, so no weight needs to be kept and the
' figures stay exact over days.
Sub Add(weight)
  Dim difference
  count = count + 1
  difference = weight - mean
  mean = mean + difference / count
  squares = squares + difference * (weight - mean)
  If count = 1 Or weight < smallest Then smallest = weight
  If count = 1 Or weight > largest Then largest = weight
  last = weight
End Sub

Sub ShowLamp(colour)
  FrmCommand.ShpOutput(0).FillColor = colour
End Sub

Function Deviation()
  Deviation = 0
  If count > 1 Then Deviation = Sqr(squares / (count - 1))
End Function

Sub StartAgain()
  count = 0 : smallest = 0 : largest = 0 : mean = 0
  squares = 0 : last = 0 : others = 0
End Sub

Sub ShowFigures()
  Dim figures, i
  figures = Array(count, Fixed(smallest), Fixed(largest), Fixed(mean), Fixed(Deviation()), Fixed(last), _
                  others, FormMain.lblerror.Caption)
  For i = 0 To UBound(figures)
    FrmCommand.TextIO(i).Text = figures(i)
  Next
  FrmCommand.txtOutput.Text = Fixed(mean) & " +/- " & Fixed(Deviation())
End Sub

' Three decimals, no thousands separators.
Function Fixed(number)
  Fixed = FormatNumber(number, 3, vbTrue, vbFalse, vbFalse)
End Function
