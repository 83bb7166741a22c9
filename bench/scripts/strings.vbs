' SPDX-License-Identifier: GPL-3.0-or-later
' A text that grows by short pieces.
Sub Main()
  Dim i, text, round
  For round = 1 To 20
    text = ""
    For i = 1 To 200000
      text = text & "W" & i & ";"
    Next
  Next
  AppendLog.RichAppendText 0, CStr(Len(text)) & vbLf
End Sub
