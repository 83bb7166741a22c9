Option Explicit
Dim a, B1, [odd name], Property, Default, Error, Explicit, Step, text
a = 1 : B1 = 2 ' a comment
Rem and a remark
Print A + b1  ' expect: 3
PRINT a : print b1
' expect: 1
' expect: 2
a = 1 : Rem after a colon
a = 1 + _
    2 _
    + 3
Print a  ' expect: 6
[odd name] = "bracketed" : Print [odd name], [a]  ' expect: bracketed 6
Property = 1 : Default = 2 : Error = 3 : Explicit = 4 : Step = 5
Print Property + Default + Error + Explicit + Step  ' expect: 15
text = "say ""hi"" 'n REM: _" : Print text  ' expect: say "hi" 'n REM: _
Print "", """", "a""b"
' expect: " a"b
: : Print "colons" : :  ' expect: colons
a=5:If a=5 Then Print"tight"  ' expect: tight
Print a,b1,-a,a-1,(a)-(b1)  ' expect: 5 2 -5 4 3
If a = 5 Then _
  Print "continued then"  ' expect: continued then
Print a <> b1, a >< b1, a <= b1, a =< b1, a >= b1, a => b1  ' expect: True True False False True True
Print &hff, &HFF, &o17, 1E2, 1e+2, 1.5e-3, #1/2/2024#  ' expect: 255 255 15 100 100 0.0015 1/2/2024
	Print "tabs",	a	' expect: tabs 5
Print Len("tab	in"), vbTab = "	"  ' expect: 6 True
Class Odd
  Public [Next]
  Public Function [Select](x)
    [Select] = x
  End Function
End Class
Dim o : Set o = New Odd
o.Next = 7
Print o.Next, o.Select(8), o.[Next]  ' expect: 7 8 7
Sub [With Blank](x) : Print "called", x : End Sub
[With Blank] 1  ' expect: called 1
Const Pi = 3.14, Greeting = "hi", Low = -5, Flag = True, When_ = #1/1/2024#
Print Pi, Greeting, Low, Flag, When_  ' expect: 3.14 hi -5 True 1/1/2024
Const mask = &HFF
Print mask, TypeName(mask)  ' expect: 255 Integer
Print &17, 1 + &17, -&10, "a" & &17, &177777, &177777&, TypeName(&17&)  ' expect: 15 16 -8 a15 -1 65535 Long
Print "x" &17, a &17, a&17, 1&17  ' expect: x17 517 517 117
Print(&17) : Dim sized(&17) : Print UBound(sized)
' expect: 15
' expect: 15
Const Octal = &17, Under = -&17 : Print Octal, Under  ' expect: 15 -15
a = _ 
  7 : Print a, " " = ChrW(160) ' expect: 7 True
' SPDX-License-Identifier: GPL-3.0-or-later
