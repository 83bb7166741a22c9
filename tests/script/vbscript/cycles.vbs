' SPDX-License-Identifier: GPL-3.0-or-later
' Objects that hold each other end while the script runs; all others end when their last reference goes.
Class Node
  Public Other, Number, Ends
  Private Sub Class_Terminate
    Ends = Ends + 1
    If Ends > 1 Then Print "ended twice"
    ended = ended + 1
    If Number = wanted And Number > 0 Then Set kept = Me
  End Sub
End Class
Dim ended, kept, wanted, n

Sub MakePairs(count)
  Dim i, a, b
  For i = 1 To count
    n = n + 2
    Set a = New Node : a.Number = n - 1
    Set b = New Node : b.Number = n
    Set a.Other = b
    Set b.Other = a
  Next
End Sub

Set alone = New Node
Set alone = Nothing
Print ended  ' expect: 1

' What the top level still refers to stays, with all that it holds.
Set d = CreateObject("Scripting.Dictionary")
Set held = New Node
Set held.Other = d
d.Add "back", Array(1, Array(held, "deep"))
held.Number = -1
MakePairs 20000
Print ended > 20000, ended < 40001  ' expect: True True
Print d("back")(1)(0).Number, held.Other.Count, held.Ends  ' expect: -1 1

' An object that stores itself at its end lives on, with its partner, and does not end a second time.
wanted = n + 1
MakePairs 20000
Print kept.Number = wanted, kept.Other.Number = wanted + 1, kept.Other.Other Is kept  ' expect: True True True
wanted = 0
before = ended
Set kept = Nothing
MakePairs 20000
Print ended - before > 20000, ended <= n + 1  ' expect: True True
