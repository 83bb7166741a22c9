Class Box
  Public Width, Content
  Sub Show(text) : Print text, Width : End Sub
  Function Twice : Twice = Width * 2 : End Function
End Class
made = 0
Function NewBox
  made = made + 1
  Set NewBox = New Box
End Function
Set b = New Box
With b
  .Width = 3
  .Show "width"  ' expect: width 3
  Print .Width, .Twice, .Width + .Twice, -.Width  ' expect: 3 6 9 -3
  Set .Content = New Box
  With .Content
    .Width = 4
    Print .Width, b.Width  ' expect: 4 3
  End With
  .Content.Width = .Content.Width + 1
  Print .Content.Width, .Width  ' expect: 5 3
  If .Width = 3 Then .Width = 10
  For i = 1 To .Width : .Width = .Width + 1 : Next
End With
Print b.Width  ' expect: 20
With NewBox
  .Width = 1 : .Width = .Width + 1 : Print .Width, made  ' expect: 2 1
End With
Set c = b
With c
  Set c = Nothing
  Print .Width  ' expect: 20
End With
With CreateObject("Scripting.Dictionary")
  .Add "a", 1
  Print .Item("a"), .Count  ' expect: 1 1
End With
Sub Leave
  With b
    Exit Sub
  End With
End Sub
Leave
Print "left"  ' expect: left
' SPDX-License-Identifier: GPL-3.0-or-later
