' SPDX-License-Identifier: GPL-3.0-or-later
' Small procedures with several arguments, by value and by reference, and the methods of a class.
Class Meter
  Private sum_, count_
  Public Sub Add(ByVal reading, factor)
    sum_ = sum_ + Scaled(reading, factor)
    count_ = count_ + 1
  End Sub
  Private Function Scaled(reading, factor)
    Scaled = reading * factor
  End Function
  Public Property Get Sum()
    Sum = sum_
  End Property
End Class

Sub Divide(ByVal number, ByVal by, quotient, rest)
  quotient = number \ by
  rest = number Mod by
End Sub

Function Limited(value, least, most)
  If value < least Then
    Limited = least
  ElseIf value > most Then
    Limited = most
  Else
    Limited = value
  End If
End Function

Sub Main()
  Dim i, quotient, rest, total, instrument
  Set instrument = New Meter
  total = 0
  For i = 1 To 400000
    Divide i, 7, quotient, rest
    total = total + Limited(quotient, 100, 5000) + rest
    instrument.Add rest, 2
  Next
  AppendLog.RichAppendText 0, CStr(total) & " " & CStr(instrument.Sum) & vbLf
End Sub
