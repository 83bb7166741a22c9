' The clock stands at Thursday, 29 February 2024, 13:45:30.25.
Print Now, Date, Time, Timer  ' expect: 2/29/2024 1:45:30 PM 2/29/2024 1:45:30 PM 49530.25
Print TypeName(Now), TypeName(Date), TypeName(Time), TypeName(Timer)  ' expect: Date Date Date Single
Print #2/29/2024#, #2/29/2024 13:45:30#, #1:45 PM#, #2024-02-29#, #12:00:00 AM#  ' expect: 2/29/2024 2/29/2024 1:45:30 PM 1:45:00 PM 2/29/2024 12:00:00 AM
Print #Feb 29, 2024#, #29 February 2024#, #1/2/2024 12:30 AM#  ' expect: 2/29/2024 2/29/2024 1/2/2024 12:30:00 AM
Print CDate(45351), CDate(0.5), CDate(0), CDate(45351.75), CDate("2024-02-29")  ' expect: 2/29/2024 12:00:00 PM 12:00:00 AM 2/29/2024 6:00:00 PM 2/29/2024
Print CDate("February 29, 2024"), CDate("10:20"), CDate("2/29/2024 10:20:30 PM")  ' expect: 2/29/2024 10:20:00 AM 2/29/2024 10:20:30 PM
Print CDate("1/1/29"), CDate("1/1/30"), Year(DateSerial(99, 1, 1)), Year(DateSerial(29, 1, 1))  ' expect: 1/1/2029 1/1/1930 1999 2029
Print CDbl(#1/1/2024#), CDbl(#6:00 AM#), CLng(#1/1/2024#), CDate(-1.5), CDbl(#12/29/1899 12:00 PM#)  ' expect: 45292 0.25 45292 12/29/1899 12:00:00 PM -1.5
Print Year("2024-02-29"), Month(#2/29/2024#), Day(#2/29/2024#), Hour(0.75), Minute(#1:02:03#), Second(#1:02:03#)  ' expect: 2024 2 29 18 2 3
Print IsNull(Year(Null)), IsNull(Hour(Null)), Weekday(#2/29/2024#), Weekday(#2/29/2024#, vbMonday), Weekday(#2/25/2024#)  ' expect: True True 5 4 1
Print DatePart("q", #5/1/2024#), DatePart("y", #2/29/2024#), DatePart("ww", #1/1/2024#), DatePart("w", #2/29/2024#)  ' expect: 2 60 1 5
Print DatePart("ww", #12/31/2023#, vbMonday, vbFirstFourDays), DatePart("ww", #1/1/2024#, vbMonday, vbFirstFourDays)  ' expect: 52 1
Print DatePart("yyyy", Now), DatePart("m", Now), DatePart("d", Now), DatePart("h", Now), DatePart("n", Now), DatePart("s", Now)  ' expect: 2024 2 29 13 45 30
Print MonthName(2), MonthName(2, True), WeekdayName(1), WeekdayName(1, True), WeekdayName(1, False, vbMonday)  ' expect: February Feb Sunday Sun Monday
Print IsDate("2/29/2024"), IsDate("13/13/2024"), IsDate("abc"), IsDate(#1:00#), IsDate(5), IsDate("10:20")  ' expect: True False False True False True
Print IsDate(""), IsDate(Null), IsDate("25:00"), IsDate("2/30/2023 10:00"), IsDate("March 15, 2024")  ' expect: False False False False True
Print DateValue("February 29, 2024"), DateValue("2/29/2024 10:00"), TimeValue("2/29/2024 13:45:30"), TimeValue("1:45 PM")  ' expect: 2/29/2024 2/29/2024 1:45:30 PM 1:45:00 PM
Print FormatDateTime(Now), FormatDateTime(Now, vbShortDate), FormatDateTime(Now, vbLongTime), FormatDateTime(Now, vbShortTime)  ' expect: 2/29/2024 1:45:30 PM 2/29/2024 1:45:30 PM 13:45
Print FormatDateTime(Now, vbLongDate), FormatDateTime("10:20", 4)  ' expect: Thursday, February 29, 2024 10:20
Print "On " & #2/29/2024# & " at " & #9:05:07 AM#  ' expect: On 2/29/2024 at 9:05:07 AM
On Error Resume Next
x = CDate("abc") : Print Err.Number : Err.Clear  ' expect: 13
x = MonthName(13) : Print Err.Number : Err.Clear  ' expect: 5
x = WeekdayName(8) : Print Err.Number : Err.Clear  ' expect: 5
x = DatePart("x", Now) : Print Err.Number : Err.Clear  ' expect: 5
x = Year("abc") : Print Err.Number : Err.Clear  ' expect: 13
x = FormatDateTime("abc") : Print Err.Number : Err.Clear  ' expect: 13
' SPDX-License-Identifier: GPL-3.0-or-later
