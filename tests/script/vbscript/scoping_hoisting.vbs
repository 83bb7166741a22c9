Option Explicit
late = 5
Print late, early  ' expect: 5 8
Dim late
Const early = 8
If False Then
  Dim inFalse
  Const constFalse = 3
End If
inFalse = 1 : Print inFalse, constFalse  ' expect: 1 3
Dim g, shadow
g = "global" : shadow = "global"
Sub Writes
  Dim shadow
  shadow = "local" : g = "written"
  Print shadow, g
End Sub
Writes  ' expect: local written
Print shadow, g  ' expect: global written
Sub HoistedDim
  If True Then inner = 5
  Print inner
  Dim inner
End Sub
HoistedDim  ' expect: 5
Sub WithConst
  Const g = 9
  Print g
End Sub
WithConst : Print g  ' expect: 9
' expect: written
Public p : Private q
p = 1 : q = 2
Function ReadsBoth : ReadsBoth = p + q : End Function
Print ReadsBoth  ' expect: 3
Sub Counts(x)
  Dim n
  n = n + 1
  x = n
End Sub
Counts p : Counts p : Print p  ' expect: 1
Sub Parameter(g)
  g = "parameter"
End Sub
Parameter shadow : Print g, shadow  ' expect: written parameter
Print "reached"  ' expect: reached
If False Then neverReached = undeclaredName
undeclaredName = 1
' ends with error 500 line 48 column 0
' SPDX-License-Identifier: GPL-3.0-or-later
