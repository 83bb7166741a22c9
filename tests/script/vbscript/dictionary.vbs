Set d = CreateObject("Scripting.Dictionary")
Print d.Count, TypeName(d), d.CompareMode, IsEmpty(d("missing")), d.Count, d.Exists("missing")  ' expect: 0 Dictionary 0 True 1 True
d.RemoveAll
d.Add "b", 2 : d.Add "a", 1 : d("c") = 3
Print Join(d.Keys, ","), Join(d.Items, ","), d.Count, d("b"), d.Item("a")  ' expect: b,a,c 2,1,3 3 2 1
d("b") = 20 : d.Item("a") = 10
Print Join(d.Items, ","), d.Exists("B"), d.Exists("a")  ' expect: 20,10,3 False True
d.Key("b") = "bb"
Print d.Exists("b"), d("bb"), Join(d.Keys, ",")  ' expect: False 20 bb,a,c
d.Remove "a"
Print Join(d.Keys, ","), UBound(d.Keys), d.Keys()(1), d.Items()(0)  ' expect: bb,c 1 c 20
d.RemoveAll
d.Add 1, "number" : d.Add "1", "text"
Print d.Count, d(1), d("1")  ' expect: 2 number text
d.RemoveAll
d.CompareMode = vbTextCompare
d.Add "Key", 1
Print d.Exists("KEY"), d("key"), d.CompareMode  ' expect: True 1 1
Set d = CreateObject("scripting.dictionary")
Set inner = CreateObject("Scripting.Dictionary")
inner("x") = 9
Set d("inner") = inner
Print d("inner")("x"), d("inner").Count, d.Item("inner") Is inner  ' expect: 9 1 True
Set k = inner
d.Add k, "by object" : Print d(inner)  ' expect: by object
d("list") = Array(1, 2, 3)
Print d("list")(1), UBound(d("list"))  ' expect: 2 2
d.RemoveAll
For i = 1 To 1000 : d("k" & i) = i : Next
For i = 1 To 1000 Step 2 : d.Remove "k" & i : Next
sum = 0
For Each key In d : sum = sum + d(key) : Next
Print d.Count, sum, d.Keys()(0), d.Keys()(499)  ' expect: 500 250500 k2 k1000
On Error Resume Next
d.Add "k2", 0 : Print Err.Number : Err.Clear  ' expect: 457
d.Remove "none" : Print Err.Number : Err.Clear  ' expect: 32811
d.CompareMode = 1 : Print Err.Number : Err.Clear  ' expect: 5
d.Key("none") = "x" : Print Err.Number : Err.Clear  ' expect: 32811
d.Key("k2") = "k4" : Print Err.Number : Err.Clear  ' expect: 457
d.NoSuch = 1 : Print Err.Number : Err.Clear  ' expect: 438
d.Add "one" : Print Err.Number : Err.Clear  ' expect: 450
Set d = CreateObject("Scripting.Dictionary") : d("k") = Array(1, 2) : d("k")(0) = 9 : Print d("k")(0)  ' expect: 1
' SPDX-License-Identifier: GPL-3.0-or-later
