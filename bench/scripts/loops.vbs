' SPDX-License-Identifier: GPL-3.0-or-later
' Nested loops of arithmetic with whole numbers and fractions.
Sub Main()
  Dim i, j, total, mean
  total = 0
  mean = 0.5
  For i = 1 To 4000
    For j = 1 To 1000
      total = total + (i * j) Mod 7 - j \ 3
      mean = mean * 0.99 + j * 0.01
    Next
  Next
  AppendLog.RichAppendText 0, CStr(total) & " " & CStr(Round(mean, 6)) & vbLf
End Sub
