' SPDX-License-Identifier: GPL-3.0-or-later
' Walks through a small calibration: zero, ten weights, verdict.
'
' Number box 0 holds the weight that should be shown, number box 1 how far off it may be, both in the
' instrument's unit. Put the load away, then check switch 0 to begin; the output box tells what is going
' on. Lamp 0 ends green or red. Leave the cycle of the main window stopped meanwhile.
Option Explicit

Const Idle = 0, AwaitZero = 1, AwaitWeight = 2  ' the steps
Const WeightsWanted = 10
Const LongestWait = 3                           ' seconds for an answer
Dim currentStep, askedAt, sum, weights

Sub InitTask()
  If FrmCommand.TextIO(0).Text = "" Then FrmCommand.TextIO(0).Text = "0"
  If FrmCommand.TextIO(1).Text = "" Then FrmCommand.TextIO(1).Text = "0.005"
  FrmCommand.ChkInput(0).Caption = "go"
  Rest "check switch 0 to begin"
  TimerTask.Interval = 200
End Sub

' Runs five times a second: begins when asked to, and gives up on an answer that does not come.
Sub Task()
  If currentStep = Idle Then
    If FrmCommand.ChkInput(0).Value = 1 Then Begin
  ElseIf DateDiff("s", askedAt, Now) > LongestWait Then
    Finish vbRed, "no answer"
  End If
End Sub

' An answer takes the walk one step on.
Sub ReceiveString()
  Dim line
  line = StringReceived.InputString
  StringReceived.OutputString = line
  Select Case currentStep
    Case AwaitZero
      If InStr(line, "ZERO OK") > 0 Then
        currentStep = AwaitWeight
        Ask "READ"
      Else
        Finish vbRed, "zero refused"
      End If
    Case AwaitWeight
      If Mid(line, 6, 1) = "," And IsNumeric(Mid(line, 7, 10)) Then
        TakeWeight CDbl(Mid(line, 7, 10))
      Else
        Finish vbRed, "no weight"
      End If
  End Select
End Sub

Sub Begin()
  If Not (IsNumeric(FrmCommand.TextIO(0).Text) And IsNumeric(FrmCommand.TextIO(1).Text)) Then
    Rest "the two boxes need numbers"
    Exit Sub
  End If
  sum = 0
  weights = 0
  FrmCommand.ShpOutput(0).FillColor = vbYellow
  currentStep = AwaitZero
  Ask "ZERO"
End Sub

Sub TakeWeight(weight)
  sum = sum + weight
  weights = weights + 1
  If weights < WeightsWanted Then Ask "READ" Else Judge sum / weights
End Sub

Sub Judge(mean)
  Dim off
  off = mean - CDbl(FrmCommand.TextIO(0).Text)
  If Abs(off) <= CDbl(FrmCommand.TextIO(1).Text) Then
    Finish vbGreen, "passed, off by " & FormatNumber(off, 4)
  Else
    Finish vbRed, "failed, off by " & FormatNumber(off, 4)
  End If
End Sub

' Sent at the next tick of Task.
Sub Ask(request)
  TimerTask.SendString = request & vbCr
  askedAt = Now
  FrmCommand.txtOutput.Text = request & " " & weights + 1
End Sub

Sub Finish(colour, verdict)
  FrmCommand.ShpOutput(0).FillColor = colour
  AppendLog.RichAppendText vbBlue, "calibration: " & verdict & vbCrLf
  Rest verdict
End Sub

Sub Rest(text)
  currentStep = Idle
  FrmCommand.ChkInput(0).Value = 0
  FrmCommand.txtOutput.Text = text
End Sub
