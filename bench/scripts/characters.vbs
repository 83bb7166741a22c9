' SPDX-License-Identifier: GPL-3.0-or-later
' Every character of a long text, one by one.
Sub Main()
  Dim text, i, digits
  text = String(4000000, "7")
  digits = 0
  For i = 1 To Len(text)
    If Mid(text, i, 1) = "7" Then digits = digits + 1
  Next
  AppendLog.RichAppendText 0, CStr(digits) & vbLf
End Sub
