'! budget 7
On Error Resume Next
Class N : Public yo, t : End Class
Do : Set a = New N : Set a.yo = a : a.t = Space(1000) : Loop
