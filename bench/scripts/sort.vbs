' SPDX-License-Identifier: GPL-3.0-or-later
' Insertion sort of numbers that a small generator gives.
Sub Main()
  Dim values(3999), i, j, held, seed
  seed = 1
  For i = 0 To 3999
    seed = (seed * 171 + 11213) Mod 53125
    values(i) = seed
  Next
  For i = 1 To 3999
    held = values(i)
    j = i - 1
    Do While j >= 0
      If values(j) <= held Then Exit Do
      values(j + 1) = values(j)
      j = j - 1
    Loop
    values(j + 1) = held
  Next
  AppendLog.RichAppendText 0, CStr(values(0)) & " " & CStr(values(2000)) & " " & CStr(values(3999)) & vbLf
End Sub
