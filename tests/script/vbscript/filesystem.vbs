' Relative names begin in the program folder.
Const ForReading = 1, ForWriting = 2, ForAppending = 8
Set fso = CreateObject("Scripting.FileSystemObject")
Set out = fso.CreateTextFile("log.txt", True)
out.WriteLine "first"
out.Write "sec" : out.Write "ond" : out.WriteBlankLines 2 : out.WriteLine 12.5
Print out.Line, out.Column  ' expect: 5 1
out.Close
Print fso.FileExists("log.txt"), fso.FileExists("none.txt"), fso.FolderExists("log.txt")  ' expect: True False False
Set text = fso.OpenTextFile("log.txt")
Print text.Line, text.ReadLine, text.Read(3), text.Column, text.ReadLine, text.AtEndOfLine  ' expect: 1 first sec 4 ond True
text.SkipLine
Print text.ReadLine, text.AtEndOfStream  ' expect: 12.5 True
text.Close
Set text = fso.OpenTextFile("log.txt", ForAppending)
text.WriteLine "last"
text.Close
Set text = fso.OpenTextFile("log.txt", ForReading)
text.Skip 2
lines = Split(text.ReadAll, vbCrLf)
text.Close
Print lines(0), lines(4), UBound(lines)  ' expect: rst last 5
Set text = fso.OpenTextFile("new.txt", ForAppending, True)
text.Write "x" : text.Close
n = 0
Set text = fso.OpenTextFile("log.txt")
Do Until text.AtEndOfStream
  If text.ReadLine <> "" Then n = n + 1
Loop
text.Close
Print n, fso.GetFile("new.txt").Size, fso.GetFile("new.txt").Name  ' expect: 4 1 new.txt
Print fso.GetFileName("dir/a.tar.gz"), fso.GetBaseName("dir/a.tar.gz"), fso.GetExtensionName("dir/a.tar.gz"), fso.GetExtensionName("a") & "|"  ' expect: a.tar.gz a.tar gz |
fso.CopyFile "new.txt", "copy.txt"
fso.MoveFile "copy.txt", "moved.txt"
Print fso.FileExists("copy.txt"), fso.FileExists("moved.txt")  ' expect: False True
fso.DeleteFile "moved.txt"
fso.CreateFolder "sub"
Print fso.FolderExists("sub"), fso.FileExists("moved.txt")  ' expect: True False
fso.CopyFile "NEW.txt", "Sub\"
fso.MoveFile ".\sub\new.txt", "sub\inside.txt"
Print fso.GetFolder("sub").Files.Count, fso.GetFolder("sub").Name, fso.GetFolder("sub").SubFolders.Count  ' expect: 1 sub 0
For Each file In fso.GetFolder("sub").Files : Print file.Name, file.Size : Next  ' expect: inside.txt 1
Set text = fso.GetFile("sub/inside.txt").OpenAsTextStream(ForReading)
Print text.ReadAll : text.Close  ' expect: x
fso.CreateFolder "sub\deep" : fso.CopyFile "sub\in*.txt", "sub\deep" : fso.MoveFolder "sub\deep", "sub\moved"
fso.OpenTextFile("sub\moved\..\moved\INSIDE.txt", ForAppending).Write "y"
Print fso.FileExists("Sub\Moved\inside.txt"), fso.GetFile("sub\moved\inside.txt").Size, fso.FileExists("C:\x"), fso.FolderExists("\\server\share")
' expect: True 2 False False
fso.DeleteFile "sub\moved\*.*" : Print fso.GetFolder("sub\moved").Files.Count  ' expect: 0
fso.DeleteFolder "sub" : Print fso.FolderExists("sub")  ' expect: False
On Error Resume Next
Set x = fso.OpenTextFile("none.txt") : Print Err.Number : Err.Clear  ' expect: 53
Set x = fso.CreateTextFile("log.txt", False) : Print Err.Number : Err.Clear  ' expect: 58
Set text = fso.OpenTextFile("new.txt") : x = text.ReadAll
x = text.ReadLine : Print Err.Number : Err.Clear  ' expect: 62
text.Write "y" : Print Err.Number : Err.Clear  ' expect: 54
text.Close
fso.DeleteFile "none.txt" : Print Err.Number : Err.Clear  ' expect: 53
Set x = fso.GetFile("none.txt") : Print Err.Number : Err.Clear  ' expect: 53
Set x = fso.GetFolder("none") : Print Err.Number : Err.Clear  ' expect: 76
fso.CreateFolder "log.txt" : Print Err.Number : Err.Clear  ' expect: 58
fso.DeleteFolder "none" : Print Err.Number : Err.Clear  ' expect: 76
' SPDX-License-Identifier: GPL-3.0-or-later
