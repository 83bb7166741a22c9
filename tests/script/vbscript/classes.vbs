Class Sensor
  Public Name, Values(2)
  Private offset_, owner_
  Private Sub Class_Initialize()
    offset_ = 10
    Name = "unnamed"
  End Sub
  Public Property Get Offset()
    Offset = offset_
  End Property
  Public Property Let Offset(value)
    offset_ = value
  End Property
  Public Property Get Owner
    Set Owner = owner_
  End Property
  Public Property Set Owner(value)
    Set owner_ = value
  End Property
  Property Get Scaled(factor, shift)
    Scaled = offset_ * factor + shift
  End Property
  Property Let Scaled(factor, shift, value)
    offset_ = (value - shift) / factor
  End Property
  Public Function Add(amount)
    offset_ = offset_ + amount
    Set Add = Me
  End Function
  Sub Describe(prefix)
    Print prefix, Name, Offset, Me.Offset, Hidden()
  End Sub
  Private Function Hidden()
    Hidden = "hidden"
  End Function
  Public Property Get [End]
    [End] = "keyword"
  End Property
End Class
Set s = New Sensor
Print s.Name, s.Offset, TypeName(s), IsObject(s), IsEmpty(s.Values(1))  ' expect: unnamed 10 Sensor True True
s.Name = "probe" : s.Offset = 5 : s.Values(1) = "v"
s.Describe "is"  ' expect: is probe 5 5 hidden
Print s.Values(1), s.Scaled(2, 1), s.END  ' expect: v 11 keyword
s.Scaled(2, 1) = 41
Print s.Offset, s.Add(1).Add(2).Offset, s.offset  ' expect: 20 23 23
Set s.Owner = New Sensor
s.Owner.Name = "inner"
Print s.Owner.Name, s.Owner Is s, TypeName(s.Owner)  ' expect: inner False Sensor
Set t = s
t.Name = "shared"
Print s.Name, t Is s  ' expect: shared True
list = Array(New Sensor, New Sensor)
list(1).Name = "second"
Print list(0).Name, list(1).Name  ' expect: unnamed second
Sub Rename(which)
  which.Name = "renamed"
  Set which = Nothing
End Sub
Rename t
Print s.Name, t Is Nothing  ' expect: renamed True
Set s.Owner = s.Add(0)
s.Owner.Owner.Owner.Name = "deep"
Print s.Name  ' expect: deep
Set s.Owner = Nothing
Class Counter
  Public Count
  Public Sub Up(n)
    If n = 0 Then Exit Sub
    Count = Count + 1
    Up n - 1
  End Sub
  Function Sum
    Sum = 0
    For i = 1 To Count : Sum = Sum + i : Next
  End Function
End Class
Set c = New Counter
c.Up 4 : Print c.Count, c.Sum  ' expect: 4 10
Call c.Up(1)
c.Up(2) : Print c.Count  ' expect: 7
ExecuteGlobal "Class Late : Public X : End Class"
Set l = New Late : l.X = 3 : Print l.X, TypeName(l)  ' expect: 3 Late
On Error Resume Next
s.NoSuch = 1 : Print Err.Number : Err.Clear  ' expect: 438
x = s.Hidden() : Print Err.Number : Err.Clear  ' expect: 438
x = s.offset_ : Print Err.Number : Err.Clear  ' expect: 438
x = s.Offset(1) : Print Err.Number : Err.Clear  ' expect: 450
s.Describe : Print Err.Number : Err.Clear  ' expect: 450
Set x = New NoClass : Print Err.Number : Err.Clear  ' expect: 506
Set e = Nothing : x = e.Name : Print Err.Number : Err.Clear  ' expect: 424
Set x = 5 : Print Err.Number : Err.Clear  ' expect: 424
y = 5 : y.Name = 1 : Print Err.Number : Err.Clear  ' expect: 424
z.Name = 1 : Print Err.Number : Err.Clear  ' expect: 424
x = Nothing : Print Err.Number : Err.Clear  ' expect: 91
x = s : Print Err.Number : Err.Clear  ' expect: 438
Err.Clear : On Error Goto 0
Class NameValue
  Public Name, Value
  Public Function Init(n, v)
    Name = n : Value = v
    Set Init = Me
  End Function
  Public Default Function Shown : Shown = Name & "=" & Value : End Function
End Class
Set pair = New NameValue.Init("Dog", 1) : Print pair.Shown, New NameValue.Init("Cat", 2).Name  ' expect: Dog=1 Cat
Dim nameValue, regExp
Set nameValue = New NameValue : nameValue.Name = "own" : Print nameValue.Name, TypeName(New nameVALUE)  ' expect: own NameValue
Set regExp = New RegExp : Print TypeName(regExp), regExp.Global  ' expect: IRegExp2 False
' SPDX-License-Identifier: GPL-3.0-or-later
Class Telling
  Public Function Tell : Tell = "method" : End Function
End Class
Class Keeping : Public Tell : End Class
Class Hiding
  Private Function Tell : Tell = "hidden" : End Function
End Class
Function TellOf(o) : TellOf = o.Tell() : End Function
Set kept = New Keeping : kept.Tell = Array("field")
Print TellOf(New Telling), TellOf(New Telling), TellOf(kept)(0), TellOf(New Telling)  ' expect: method method field method
On Error Resume Next
x = TellOf(New Hiding) : Print Err.Number : Err.Clear  ' expect: 438
x = TellOf(Nothing) : Print Err.Number : Err.Clear  ' expect: 424
On Error Goto 0
ExecuteGlobal "Class Telling : Public Function Tell : Tell = ""anew"" : End Function : End Class"
Print TellOf(New Telling)  ' expect: anew
