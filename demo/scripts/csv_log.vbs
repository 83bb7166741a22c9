' SPDX-License-Identifier: GPL-3.0-or-later
' Writes every weight into readings.csv in the program folder, for a spreadsheet.
'
' A line is: date, time, state, weight, unit, remark. The remark is what stands in the input box of the
' panel at that moment. Lines are added to those of earlier days.
Option Explicit

Const FileName = "readings.csv"
Const ForAppending = 8
Dim files, written

Sub InitTask()
  Set files = CreateObject("Scripting.FileSystemObject")
  written = 0
  If Not files.FileExists(FileName) Then AddLine "date,time,state,weight,unit,remark"
End Sub

Sub ReceiveString()
  Dim line, weight, moment
  line = StringReceived.InputString
  StringReceived.OutputString = line
  weight = Mid(line, 7, 10)
  If Mid(line, 6, 1) <> "," Or Not IsNumeric(weight) Then Exit Sub

  moment = Now
  AddLine DateOf(moment) & "," & TimeOf(moment) & "," & _
          Left(line, 2) & "," & CDbl(weight) & "," & Trim(Mid(line, 18, 2)) & "," & _
          Quoted(FrmCommand.txtInput.Text)
  written = written + 1
  FrmCommand.txtOutput.Text = written & " lines in " & FileName
End Sub

' The file is closed again after each line, so that nothing is lost whatever happens and other programs
' can read it. A disk that is full must not stop the test: it is only said, in red.
Sub AddLine(text)
  Dim file
  On Error Resume Next
  Err.Clear
  Set file = files.OpenTextFile(FileName, ForAppending, True)
  If Err.Number = 0 Then
    file.WriteLine text
    file.Close
  End If
  If Err.Number <> 0 Then AppendLog.RichAppendText vbRed, FileName & ": " & Err.Description & vbCrLf
End Sub

' 2024-02-29, which every spreadsheet understands.
Function DateOf(moment)
  DateOf = Year(moment) & "-" & TwoDigits(Month(moment)) & "-" & TwoDigits(Day(moment))
End Function

Function TimeOf(moment)
  TimeOf = TwoDigits(Hour(moment)) & ":" & TwoDigits(Minute(moment)) & ":" & TwoDigits(Second(moment))
End Function

Function TwoDigits(number)
  TwoDigits = Right("0" & number, 2)
End Function

' A text with commas or quotes in it stays one field.
Function Quoted(text)
  Quoted = """" & Replace(text, """", """""") & """"
End Function

Sub EndTask()
  Set files = Nothing
End Sub
