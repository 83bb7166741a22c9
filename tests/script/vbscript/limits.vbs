' A script that runs away gets an error that it can catch, and goes on.
depth = 0
Sub Sink
  depth = depth + 1
  Sink
End Sub
Function Fibonacci(n)
  If n < 2 Then Fibonacci = n Else Fibonacci = Fibonacci(n - 1) + Fibonacci(n - 2)
End Function
Class Link
  Public NextLink
  Public Default Property Get Item() : Item = Me.Item : End Property
End Class
On Error Resume Next
Sink
Print Err.Number, depth > 1000, depth <= 10000 : Err.Clear  ' expect: 28 True True
depth = 0 : Sink : Print Err.Number : Err.Clear  ' expect: 28
Set l = New Link : x = l.Item : Print Err.Number : Err.Clear  ' expect: 28
Print Fibonacci(15), Err.Number  ' expect: 610 0
s = "x"
Do While Err.Number = 0 : s = s & s : Loop
Print Err.Number, Len(s) > 1000 : Err.Clear  ' expect: 7 True
s = "" : s = String(1000, "y") : Print Len(s), Err.Number  ' expect: 1000 0
ReDim big(100000000) : Print Err.Number : Err.Clear  ' expect: 7
Set d = CreateObject("Scripting.Dictionary")
Do While Err.Number = 0 : d.Add d.Count, String(10000, "z") : Loop
Print Err.Number : Err.Clear  ' expect: 7
d.RemoveAll
Set first = Nothing
For i = 1 To 100000
  Set l = New Link : Set l.NextLink = first : Set first = l
Next
Set l = Nothing : Set first = Nothing
Print "chain gone", Err.Number  ' expect: chain gone 0
deep = 1
For i = 1 To 2000 : deep = Array(deep) : Next
deep = Empty
Print "nest gone", Err.Number  ' expect: nest gone 0
' SPDX-License-Identifier: GPL-3.0-or-later
