' SPDX-License-Identifier: GPL-3.0-or-later
' Takes answers apart by patterns and writes in plain words what they say.
'
' Each kind of answer has one row in the table below: a pattern, and the words, in which $1, $2 ... stand
' for the parts in round brackets. Add rows for your own instrument.
Option Explicit

Dim pattern, rows

Sub InitTask()
  Set pattern = New RegExp
  rows = Array( _
      Array("^ST,GS,([+-])0*(\d+\.\d+) *(\w+)", "stable, gross $1$2 $3"), _
      Array("^ST,NT,([+-])0*(\d+\.\d+) *(\w+)", "stable, net $1$2 $3"), _
      Array("^US,\w+,([+-])0*(\d+\.\d+) *(\w+)", "settling at $1$2 $3"), _
      Array("^SN,0*(\d+)", "serial number $1"), _
      Array("^UNIT,(\w+)", "weighs in $1 now"), _
      Array("^VER,(\d+)\.(\d+)", "version $1, revision $2"), _
      Array("^(TARE|ZERO) OK", "$1 done"))
End Sub

Sub ReceiveString()
  Dim words
  StringReceived.OutputString = StringReceived.InputString
  words = InWords(StringReceived.InputString)
  If words = "" Then
    AppendLog.RichAppendText vbRed, "not understood" & vbCrLf
  Else
    AppendLog.RichAppendText vbMagenta, words & vbCrLf
  End If
  FrmCommand.txtOutput.Text = words
End Sub

' The words of the first row that fits, or nothing.
Function InWords(line)
  Dim row, found
  For Each row In rows
    pattern.Pattern = row(0)
    Set found = pattern.Execute(line)
    If found.Count > 0 Then
      InWords = pattern.Replace(found(0).Value, row(1))
      Exit Function
    End If
  Next
  InWords = ""
End Function
