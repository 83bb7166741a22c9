' SPDX-License-Identifier: GPL-3.0-or-later
' Calls: each of the 75,025 leaves costs three.
Function Fib(n)
  If n < 2 Then
    Fib = n
  Else
    Fib = Fib(n - 1) + Fib(n - 2)
  End If
End Function

Sub Main()
  Dim i
  For i = 1 To 20
    AppendLog.RichAppendText 0, CStr(Fib(24)) & vbLf
  Next
End Sub
