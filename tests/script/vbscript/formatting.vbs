' Halves go away from zero here.
Print FormatNumber(1234.567), FormatNumber(0.5), FormatNumber(2.5, 0), FormatNumber(-2.5, 0), FormatNumber(0.125, 2)  ' expect: 1,234.57 0.50 3 -3 0.13
Print FormatNumber(0.5, 2, vbFalse), FormatNumber(-0.5, 1, False), FormatNumber(0.5, 2, vbUseDefault)  ' expect: .50 -.5 0.50
Print FormatNumber(-1234.5, 1, , vbTrue), FormatNumber(1234.5, 1, , vbTrue), FormatNumber(-1234.5, 1)  ' expect: (1,234.5) 1,234.5 -1,234.5
Print FormatNumber(1234567, 0), FormatNumber(1234567, 0, , , vbFalse), FormatNumber(999, 0), FormatNumber(1E10, 0)  ' expect: 1,234,567 1234567 999 10,000,000,000
Print FormatNumber("12.5", 1), FormatNumber(Empty), FormatNumber(True, 0), FormatNumber(99.999, 2)  ' expect: 12.5 0.00 -1 100.00
Print FormatCurrency(1234.5), FormatCurrency(-1234.5), FormatCurrency(-1234.5, , , vbFalse), FormatCurrency(0.5, 1)  ' expect: $1,234.50 ($1,234.50) -$1,234.50 $0.5
Print FormatPercent(0.256), FormatPercent(1, 0), FormatPercent(-0.5), FormatPercent(0.12345, 1), FormatPercent(12)  ' expect: 25.60% 100% -50.00% 12.3% 1,200.00%
Print TypeName(FormatNumber(1)), Right("0000" & 42, 4), FormatNumber(12.345, 1)  ' expect: String 0042 12.3
On Error Resume Next
x = FormatNumber("abc") : Print Err.Number : Err.Clear  ' expect: 13
x = FormatPercent("") : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
