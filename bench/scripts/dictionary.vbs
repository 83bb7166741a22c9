' SPDX-License-Identifier: GPL-3.0-or-later
' Counting words: texts and numbers as keys.
Sub Main()
  Dim counts, i, key, total
  Set counts = CreateObject("Scripting.Dictionary")
  For i = 1 To 2000000
    key = "key" & (i Mod 5000)
    If counts.Exists(key) Then
      counts(key) = counts(key) + 1
    Else
      counts.Add key, 1
    End If
  Next
  For Each key In counts
    total = total + counts(key)
  Next
  AppendLog.RichAppendText 0, CStr(counts.Count) & " " & CStr(total) & vbLf
End Sub
