' SPDX-License-Identifier: GPL-3.0-or-later
' Adds a checksum to what is sent, and checks and removes the one of what is received.
'
' The checksum is the exclusive or of all characters, as two hexadecimal digits in front of the line's end.
' Switch 0: add it to requests. Switch 1: the answers have one. Switch 2: frame requests in STX and ETX.
' The simulated instrument sends such answers when it is started with "--checksum sysway"; its requests
' have no checksum, so leave switch 0 off with it.
Option Explicit

Sub InitTask()
  FrmCommand.ChkInput(0).Caption = "add"
  FrmCommand.ChkInput(1).Caption = "check"
  FrmCommand.ChkInput(2).Caption = "frame"
  FrmCommand.ShpOutput(0).FillColor = vbWhite
End Sub

' Runs for every text that is about to be sent. What stands in OutputString afterwards goes out instead.
Sub SendString()
  Dim body, lineEnd
  Divide StringToSend.InputString, body, lineEnd
  If FrmCommand.ChkInput(0).Value = 1 Then body = body & Checksum(body)
  If FrmCommand.ChkInput(2).Value = 1 Then body = Chr(2) & body & Chr(3)
  StringToSend.OutputString = body & lineEnd
End Sub

Sub ReceiveString()
  Dim body, lineEnd, text
  StringReceived.OutputString = StringReceived.InputString
  If FrmCommand.ChkInput(1).Value = 0 Then Exit Sub

  Divide StringReceived.InputString, body, lineEnd
  If Len(body) < 3 Then Exit Sub
  text = Left(body, Len(body) - 2)
  If UCase(Right(body, 2)) = Checksum(text) Then
    FrmCommand.ShpOutput(0).FillColor = vbGreen
    StringReceived.OutputString = text & lineEnd
  Else
    FrmCommand.ShpOutput(0).FillColor = vbRed
    AppendLog.RichAppendText vbRed, "expected " & Checksum(text) & ", got " & Right(body, 2) & vbCrLf
    FormMain.SignalError 3  ' counts the error as the program's own checksum test would
  End If
End Sub

' Takes a text apart into what comes before its CR or LF and the rest. The two results are handed back in
' the last two arguments.
Sub Divide(text, body, lineEnd)
  Dim length
  length = Len(text)
  Do While length > 0
    If Mid(text, length, 1) <> vbCr And Mid(text, length, 1) <> vbLf Then Exit Do
    length = length - 1
  Loop
  body = Left(text, length)
  lineEnd = Mid(text, length + 1)
End Sub

Function Checksum(text)
  Dim sum, i
  sum = 0
  For i = 1 To Len(text)
    sum = sum Xor (AscW(Mid(text, i, 1)) And 255)
  Next
  Checksum = Right("0" & Hex(sum), 2)
End Function
