' SPDX-License-Identifier: GPL-3.0-or-later
' Asks for the weight ten times, judges how far the answers lie apart, and ends the program: status 0 is
' passed, 3 failed, 4 no answer or no weight in it. A build server or a batch file needs no more than that:
'
'   quarlin --headless LOAD && echo passed
'
' with the port, and this script switched on, in the configuration. Leave the cycle stopped.
Option Explicit

Const Wanted = 10           ' weights
Const MostApart = 0.02      ' in the instrument's unit
Const LongestWait = 2000    ' milliseconds for an answer
Const BetweenTwo = 50       ' milliseconds
Const Passed = 0, Failed = 3, NoWeight = 4

Sub InitTask()
  TimerTask.Interval = 100  ' the link is opened behind InitTask
End Sub

Sub Task()
  If FormMain.CommIsOpen Then FormMain.Finish Verdict()
End Sub

Function Verdict()
  Dim i, weight, least, most
  For i = 1 To Wanted
    weight = AskedFor("READ")
    If IsEmpty(weight) Then
      Say vbRed, "weight " & i & ": none"
      Verdict = NoWeight
      Exit Function
    End If
    If i = 1 Or weight < least Then least = weight
    If i = 1 Or weight > most Then most = weight
    FormMain.Sleep BetweenTwo
  Next
  Verdict = Passed
  If most - least > MostApart Then Verdict = Failed
  Say vbBlue, Wanted & " weights, " & FormatNumber(most - least, 3) & " apart, " & MostApart & " allowed"
End Function

' The number in the answer; Empty where there is no answer in time, or no number in it.
Function AskedFor(request)
  Dim answer
  FormMain.SendString request & vbCr
  answer = FormMain.WaitAnswer(LongestWait)
  If Mid(answer, 6, 1) = "," And IsNumeric(Mid(answer, 7, 10)) Then AskedFor = CDbl(Mid(answer, 7, 10))
End Function

Sub Say(colour, line)
  AppendLog.RichAppendText colour, line & vbCrLf
End Sub
