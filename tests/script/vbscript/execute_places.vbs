' SPDX-License-Identifier: GPL-3.0-or-later
' What a statement has found by name is let go at its end, whatever numbers stand in it: the next one would
' write to it.
Option Explicit
Function Five : Five = 5 : End Function
ExecuteGlobal "Dim a, b(3)"
b(2) = 1 : b(Five - 3) = Five : Print b(2)  ' expect: 5
b(Five - 1 - 2) = Five + 1 : Print b(2)  ' expect: 6
b(Five - 2 - 1) = Five + 2 : Print b(2), a  ' expect: 7
