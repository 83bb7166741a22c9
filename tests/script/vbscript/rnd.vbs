Print Rnd, Rnd(), Rnd(1), Rnd(5)  ' expect: 0.7055475 0.533424 0.5795186 0.2895625
Print Rnd(0), Rnd(0), TypeName(Rnd)  ' expect: 0.2895625 0.2895625 Single
Print Rnd, Rnd, Rnd  ' expect: 0.7747401 1.401764E-02 0.7607236
Print Rnd(-1), Rnd(-1), Rnd(-2), Rnd(-0.5)  ' expect: 0.224007 0.224007 0.7133257 0.724007
Rnd -1 : Randomize 42
a = Rnd : b = Rnd
Rnd -1 : Randomize 42
Print a = Rnd, b = Rnd, a >= 0 And a < 1  ' expect: True True True
Randomize 42
c = Rnd
Rnd
Randomize 42
Print c = Rnd  ' expect: False
Randomize
low = 0 : high = 0
For i = 1 To 600
  roll = Int(Rnd * 6) + 1
  If roll = 1 Then low = low + 1
  If roll = 6 Then high = high + 1
  If roll < 1 Or roll > 6 Then Print "outside"
Next
Print low > 0, high > 0  ' expect: True True
' SPDX-License-Identifier: GPL-3.0-or-later
