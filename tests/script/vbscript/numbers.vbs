' Which kind a number has, and what happens when it does not fit.
Print TypeName(1), TypeName(32767), TypeName(32768), TypeName(-32768)  ' expect: Integer Integer Long Long
Print TypeName(2147483647), TypeName(2147483648), TypeName(1.0), TypeName(1E2)  ' expect: Long Double Double Double
Print &HFFFF, &HFFFF&, &HFFFFFFFF, &H8000, &H10000  ' expect: -1 65535 -1 -32768 65536
Print TypeName(&HFFFF), TypeName(&HFFFF&), TypeName(&H7FFF), TypeName(&H10000)  ' expect: Integer Long Integer Long
Print 010, &O17, .5, 1.5E+3, 1e-2  ' expect: 10 15 0.5 1500 0.01
Print Hex(-32768), Hex(-1), Hex(255), Oct(8), Oct(-1), Hex(65536)  ' expect: FFFF8000 FFFF FF 10 177777 10000
Print 32767 + 1, TypeName(32767 + 1), -32767 - 2, 200 * 200, TypeName(200 * 200)  ' expect: 32768 Long -32769 40000 Long
Print 2147483647 + 1, TypeName(2147483647 + 1), 100000 * 100000, TypeName(100000 * 100000)  ' expect: 2147483648 Double 10000000000 Double
Print TypeName(CByte(1) + CByte(1)), CByte(200) + CByte(100), TypeName(True + True), True + True  ' expect: Byte 300 Integer -2
Print TypeName(1 + 1.5), TypeName(CCur(1) + 1), TypeName(1 + 100000), TypeName(1 + "2")  ' expect: Double Currency Long Double
Print TypeName(4 / 2), 4 / 2, 7 / 2, TypeName(7 \ 2), TypeName(100000 \ 2)  ' expect: Double 2 3.5 Integer Long
Print 8.5 \ 2, 7.5 \ 2, -7 \ 2, 10.6 Mod 4, 2.5 Mod 2, 3.5 Mod 3  ' expect: 4 4 -3 3 0 1
Print -7 Mod 3, 7 Mod -3, -7 Mod -3, 7 Mod 7, TypeName(7 Mod 2)  ' expect: -1 1 -1 0 Integer
Print -3 ^ 2, 0 - 3 ^ 2, 2 ^ 3 ^ 2, 2 ^ -1, 2 ^ 0.5, 0 ^ 0  ' expect: 9 -9 64 0.5 1.4142135623731 1
Print TypeName(2 ^ 2), 10 ^ 3, (-2) ^ 3, 4 ^ 0.5  ' expect: Double 1000 -8 2
Print 2 + 3 * 4, (2 + 3) * 4, 7 \ 2 * 2, 10 Mod 3 * 2, 10 Mod 7 \ 2  ' expect: 14 20 1 4 1
Print 8 / 4 / 2, 10 - 3 - 2, 5 Mod 3 + 1, -5 Mod 3, 2 * -3, 1 - -1  ' expect: 1 5 3 -2 -6 2
Print "5" * "2", "7" - 2, "6" / "3", "7" \ "2", "9" Mod "4", -"3"  ' expect: 10 5 2 3 1 -3
Print Empty + 1, Empty * 5, Empty + "a", TypeName(Empty + Empty), +"3"  ' expect: 1 0 a Integer 3
Print CCur(0.1) + CCur(0.2), CCur(0.1) + CCur(0.2) = CCur(0.3), 0.1 + 0.2 = 0.3  ' expect: 0.3 True False
Print IsNull(1 + Null), IsNull(Null * 0), IsNull(-Null), IsNull(Null ^ 2), IsNull(Null \ 1)  ' expect: True True True True True
Print TypeName(-CByte(5)), -CByte(5), TypeName(-True), -True, TypeName(- -32768)  ' expect: Integer -5 Integer 1 Long
On Error Resume Next
x = 1 / 0
Print Err.Number, IsEmpty(x) : Err.Clear  ' expect: 11 True
x = 5 \ 0 : Print Err.Number : Err.Clear  ' expect: 11
x = 5 Mod 0.4 : Print Err.Number : Err.Clear  ' expect: 11
x = 3000000000 \ 1 : Print Err.Number : Err.Clear  ' expect: 6
x = 3000000000 Mod 7 : Print Err.Number : Err.Clear  ' expect: 6
x = 1E308 * 10 : Print Err.Number : Err.Clear  ' expect: 6
x = 10 ^ 400 : Print Err.Number : Err.Clear  ' expect: 6
x = (-8) ^ 0.5 : Print Err.Number : Err.Clear  ' expect: 5
x = "a" + 1 : Print Err.Number : Err.Clear  ' expect: 13
x = "" + 1 : Print Err.Number : Err.Clear  ' expect: 13
x = -"abc" : Print Err.Number : Err.Clear  ' expect: 13
x = Array(1) + 1 : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
