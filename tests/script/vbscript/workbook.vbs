' SPDX-License-Identifier: GPL-3.0-or-later
' Workbooks in memory; what the files hold is tried elsewhere.
Set xl = CreateObject("Excel.Application")
Print xl.Visible, xl.Workbooks.Count, xl.ActiveWorkbook Is Nothing  ' expect: False 0 True
xl.Visible = True
Print xl.Visible, xl.Version >= 12  ' expect: True True
Sub Fails()
  Print Err.Number, Err.Description
  Err.Clear
End Sub
On Error Resume Next
xl.Cells(1, 1).Value = 1
Fails  ' expect: 1004 No workbook is open: Workbooks.Add makes one
xl.Workbooks.Open "x.xlsx"
Fails  ' expect: 438 Object doesn't support this property or method
On Error Goto 0

Set wb = xl.Workbooks.Add
Set ws = wb.ActiveSheet
Print wb.Name, ws.Name, wb.Worksheets.Count, TypeName(ws), TypeName(ws.Cells)  ' expect: Book1 Sheet1 1 Worksheet Range

' What is put in comes out, by kind.
For Each given In Array(1, 2.5, CCur(3), "007", "'=1", "", True, #2/29/2024#, Null)
  ws.Cells(1, 1).Value = given
  Print TypeName(ws.Cells(1, 1).Value), ws.Cells(1, 1)
Next
' expect: Double 1
' expect: Double 2.5
' expect: Double 3
' expect: String 007
' expect: String =1
' expect: String
' expect: Boolean True
' expect: Date 2/29/2024
' expect: Empty
ws.Cells(1, 1).Value = #2/29/2024#
Print ws.Cells(1, 1).Value2, ws.Cells(1, 1).NumberFormat  ' expect: 45351 yyyy-mm-dd
ws.Cells(2, "B") = "=A1+1"
Print ws.Range("B2").Formula  ' expect: =A1+1
On Error Resume Next
x = ws.Range("B2").Value
Fails  ' expect: 1004 The value of a formula is worked out by the program that opens the workbook, not here
ws.Cells(1, 1).Value = String(32768, "x")
Fails  ' expect: 1004 A cell holds at most 32767 characters, not 32768
ws.Cells(1048577, 1).Value = 1
Fails  ' expect: 1004 There is no such cell: a sheet has 1048576 rows and 16384 columns
ws.Cells(1, 16385) = 1
Fails  ' expect: 1004 There is no such cell: a sheet has 1048576 rows and 16384 columns
ws.Cells(0, 1) = 1
Fails  ' expect: 1004 There is no such cell: a sheet has 1048576 rows and 16384 columns
ws.Range("A1,B2") = 1
Fails  ' expect: 1004 'A1,B2' is no address of cells, such as A1:C3
ws.ChartObjects.Add
Fails  ' expect: 438 Object doesn't support this property or method
On Error Goto 0

' Ranges and their addresses.
ws.Cells.Clear
Print ws.UsedRange.Address  ' expect: $A$1
Print ws.Range("c3:A1").Address, ws.Range("$B$2").Address(False, False), ws.Range("B:D").Address, ws.Range("2:3").Address
' expect: $A$1:$C$3 B2 $B:$D $2:$3
Print ws.Range(ws.Cells(2, 2), ws.Cells(3, 28)).Address, ws.Columns("XFD").Column  ' expect: $B$2:$AB$3 16384
Set r = ws.Range("B2:D4")
Print r.Rows.Count, r.Columns.Count, r.Count, r(2, 1).Address, r(4).Address, r.Rows(2).Address, r.Columns(3).Address
' expect: 3 3 9 $B$3 $B$3 $B$3:$D$3 $D$2:$D$4
Print r.Offset(1, -1).Address, r.Resize(1).Address, r.EntireRow.Address, r.Range("B1").Address, ws.Cells.Count
' expect: $A$3:$C$5 $B$2:$D$2 $2:$4 $C$2 17179869184

' A whole range at once: one value, a list for each row, a matrix; what an array does not reach is emptied.
r.Value = 7
r(1, 1) = "first"
Dim m(1, 1)
m(0, 0) = 1 : m(0, 1) = 2 : m(1, 0) = 3 : m(1, 1) = 4
ws.Range("B2:D3").Value = m
ws.Range("B5:D6").Value = Array("a", "b")
For Each row In ws.Range("B2:D6").Rows
  line = ""
  For Each cell In row.Cells : line = line & "[" & cell.Value & "]" : Next
  Print line
Next
' expect: [1][2][]
' expect: [3][4][]
' expect: [7][7][7]
' expect: [a][b][]
' expect: [a][b][]
ws.Range("H1:I2").Value = ws.Range("B2:C3").Value
v = ws.Range("H1:I2").Value
Print v(1, 0), ws.Range("I2").Value, UBound(v, 2)  ' expect: 3 4 1

' Where a block ends.
Print ws.Cells(ws.Rows.Count, 2).End(-4162).Row, ws.Range("B2").End(-4121).Row, ws.Range("D2").End(-4121).Row, ws.Range("A1").End(-4121).Row
' expect: 6 6 4 1048576
Print ws.Cells(2, ws.Columns.Count).End(-4159).Column, ws.Range("B2").End(-4161).Column, ws.Range("A3").End(-4161).Column
' expect: 9 3 2

' A row's look and a column's look meet in the cells where they cross.
ws.Columns("B").NumberFormat = "0.00"
ws.Rows(1).Font.Bold = True
ws.Columns("C").Font.Italic = True
Print ws.Cells(1, 2).NumberFormat, ws.Cells(1, 2).Font.Bold, ws.Cells(1, 3).Font.Italic, ws.Cells(2, 9).Font.Bold
' expect: 0.00 True True False
ws.Cells(2, 2).Font.Color = vbRed
Print ws.Cells(2, 2).Font.Color, ws.Cells(2, 2).Font.ColorIndex, ws.Cells(2, 2).NumberFormat, ws.Cells(3, 2).Font.Color
' expect: 255 3 0.00 0
ws.Rows.RowHeight = 20
ws.Rows(2).RowHeight = 30
Print ws.Cells(1, 1).RowHeight, ws.Cells(2, 1).RowHeight, ws.Cells(1, 1).ColumnWidth  ' expect: 20 30 8.43
ws.Rows("2:4").AutoFit
Print ws.Rows(2).RowHeight  ' expect: 20
ws.Range("K1:L2").Merge
ws.Range("L2:M3").Merge
Print ws.Range("K1").MergeCells, ws.Range("M3").MergeCells  ' expect: False True

' Sheets by number and name; the rules for names.
Set later = wb.Worksheets.Add(, ws)
later.Name = "Data"
Print wb.Sheets.Count, wb.Sheets("DATA").Index, wb.Sheets(1).Name, wb.ActiveSheet.Name  ' expect: 2 2 Sheet1 Data
xl.Cells(1, 1) = "on Data"
Print later.Range("A1")  ' expect: on Data
On Error Resume Next
For Each name In Array("", "a/b", String(32, "x"), "'x", "sheet1")
  later.Name = name
  Fails
Next
' expect: 1004 A sheet cannot be called '': a name must have a character
' expect: 1004 A sheet cannot be called 'a/b': a name must not hold any of [ ] : * ? / \
' expect: 1004 A sheet cannot be called 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx': a name has at most 31 characters
' expect: 1004 A sheet cannot be called ''x': a name must not begin or end with '
' expect: 1004 There is a sheet 'sheet1' already
wb.Worksheets("none").Activate
Fails  ' expect: 9 Subscript out of range
wb.Worksheets(3).Activate
Fails  ' expect: 9 Subscript out of range
ws.Delete
later.Delete
Fails  ' expect: 1004 A workbook must have a sheet that is seen
On Error Goto 0

' Saving: only .xlsx, asking before another file is replaced and before changes are lost.
Print wb.Saved, wb.FullName  ' expect: False Book1
wb.SaveAs "made"
Print wb.Name, wb.Saved, CreateObject("Scripting.FileSystemObject").FileExists("made.xlsx")  ' expect: made.xlsx True True
wb.SaveAs "made.xlsx"
Set other = xl.Workbooks.Add
other.SaveAs "MADE.xlsx", 51
' expect: box There is a file 'made.xlsx' already. Replace it? 36 Workbook
other.ActiveSheet.Cells(1, 1) = 1
other.Close
' expect: box Save the changes in 'made.xlsx'? 36 Workbook
On Error Resume Next
wb.SaveAs "old.xls"
Fails  ' expect: 1004 'old.xls' cannot be saved: workbooks are written as .xlsx only
wb.SaveAs "x", 6
Fails  ' expect: 1004 Workbooks are written as .xlsx only, which is the format 51
wb.SaveAs "no\such\x.xlsx"
Fails  ' expect: 1004 'x.xlsx' cannot be saved: No such file or directory
On Error Goto 0
later.Cells(1, 1) = 2
xl.DisplayAlerts = False
xl.Quit
Print xl.Workbooks.Count  ' expect: 0

' Cells count as memory.
Set ws = xl.Workbooks.Add.ActiveSheet
On Error Resume Next
ws.Columns("A").Value = 1
failed = Err.Number
ws.Cells.Clear
Print failed, ws.UsedRange.Address  ' expect: 7 $A$1
