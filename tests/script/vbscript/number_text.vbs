' How a number is written.
Print 0.1 + 0.2, 1 / 3, 2 / 3, 100 / 3, -0.5, 0.05  ' expect: 0.3 0.333333333333333 0.666666666666667 33.3333333333333 -0.5 0.05
Print 1 / 30, 1 / 300, 0.00001, 1E-16, 1.5E-20  ' expect: 3.33333333333333E-02 3.33333333333333E-03 0.00001 1E-16 1.5E-20
Print 1E14, 1E15, 123456789012345, 1234567890123456, 1.5E300  ' expect: 100000000000000 1E+15 123456789012345 1.23456789012346E+15 1.5E+300
Print -1E15, -1 / 30, 1E100, 1E-100, 12345.678901  ' expect: -1E+15 -3.33333333333333E-02 1E+100 1E-100 12345.678901
Print CSng(0.1), CSng(1 / 3), CSng(0.03584582), CSng(16777216), CSng(1234567)  ' expect: 0.1 0.3333333 3.584582E-02 1.677722E+07 1234567
Print CSng(-2.5), CSng(0.05), CSng(1E-3), TypeName(CSng(1))  ' expect: -2.5 0.05 0.001 Single
Print CCur(1234.5), CCur(0.0001), CCur(-1.25), CCur(1.23456)  ' expect: 1234.5 0.0001 -1.25 1.2346
Print 1.0, 100.50, True, False, Empty, Null, CByte(7)  ' expect: 1 100.5 True False  Null 7
Print "" & 1E15, "" & 0.5, "" & -0.25, "" & True, "" & CCur(2)  ' expect: 1E+15 0.5 -0.25 True 2
Print Len(1 / 3), Len(True), Len(-5), Len(Empty)  ' expect: 17 4 2 0
' SPDX-License-Identifier: GPL-3.0-or-later
