Print #3/1/2024# - #2/29/2024#, TypeName(#3/1/2024# - #2/29/2024#)  ' expect: 1 Double
Print #2/29/2024# + 1, TypeName(#2/29/2024# + 1), #2/29/2024# - 1, #2/29/2024# + 0.5  ' expect: 3/1/2024 Date 2/28/2024 2/29/2024 12:00:00 PM
Print DateAdd("m", 1, #1/31/2024#), DateAdd("m", 1, #1/31/2023#), DateAdd("yyyy", 1, #2/29/2024#), DateAdd("q", 1, #11/30/2023#)  ' expect: 2/29/2024 2/28/2023 2/28/2025 2/29/2024
Print DateAdd("d", 1, #12/31/2023#), DateAdd("y", -1, #1/1/2024#), DateAdd("w", 2, #1/1/2024#), DateAdd("ww", 2, #1/1/2024#)  ' expect: 1/1/2024 12/31/2023 1/3/2024 1/15/2024
Print DateAdd("h", 25, #1/1/2024#), DateAdd("n", -1, #1/1/2024#), DateAdd("s", 90, #1/1/2024 10:00#)  ' expect: 1/2/2024 1:00:00 AM 12/31/2023 11:59:00 PM 1/1/2024 10:01:30 AM
Print DateAdd("m", -1, #3/31/2024#), DateAdd("m", 13, #1/15/2024#), DateAdd("d", 1, "2/28/2024"), TypeName(DateAdd("d", 1, Now))  ' expect: 2/29/2024 2/15/2025 2/29/2024 Date
Print DateDiff("yyyy", #12/31/2023#, #1/1/2024#), DateDiff("m", #1/31/2024#, #2/1/2024#), DateDiff("q", #3/31/2024#, #4/1/2024#)  ' expect: 1 1 1
Print DateDiff("d", #1/1/2024 23:59#, #1/2/2024 0:01#), DateDiff("h", #10:59#, #11:01#), DateDiff("n", #10:00:59#, #10:01:00#), DateDiff("s", #10:00#, #10:01#)  ' expect: 1 1 1 60
Print DateDiff("d", #1/1/2024#, #2/1/2024#), DateDiff("d", #2/1/2024#, #1/1/2024#), DateDiff("yyyy", #1/1/2024#, #12/31/2024#)  ' expect: 31 -31 0
Print DateDiff("ww", #2/24/2024#, #2/25/2024#), DateDiff("ww", #2/24/2024#, #2/25/2024#, vbMonday), DateDiff("w", #1/1/2024#, #1/15/2024#)  ' expect: 1 0 2
Print DateSerial(2024, 13, 1), DateSerial(2024, 3, 0), DateSerial(2024, 1, -1), DateSerial(2024, 0, 1), DateSerial(2023, 2, 29)  ' expect: 1/1/2025 2/29/2024 12/30/2023 12/1/2023 3/1/2023
Print TimeSerial(12, -15, 0), TimeSerial(1, 70, 5), TimeSerial(0, 0, 0), TimeSerial(23, 59, 59)  ' expect: 11:45:00 AM 2:10:05 AM 12:00:00 AM 11:59:59 PM
days = 0
For d = #2/27/2024# To #3/2/2024#
  days = days + 1
Next
Print days  ' expect: 5
Print #1/1/2024# > #12/31/2023#, Int(#1/1/2024 18:00#) = #1/1/2024#  ' expect: True True
On Error Resume Next
x = DateAdd("x", 1, Now) : Print Err.Number : Err.Clear  ' expect: 5
x = DateDiff("x", Now, Now) : Print Err.Number : Err.Clear  ' expect: 5
x = DateAdd("yyyy", 9000, #1/1/2024#) : Print Err.Number : Err.Clear  ' expect: 5
x = DateSerial(10000, 1, 1) : Print Err.Number : Err.Clear  ' expect: 5
x = DateAdd("d", 1, "no date") : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
