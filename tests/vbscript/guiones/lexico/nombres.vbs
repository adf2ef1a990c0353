' Names, bracketed names, words that are only sometimes keywords.
[a b] = 1 : [] = 2 : [End] = 3
Echo [a b] + [] + [end] '= 6
Default = 1 : Error = 2 : Explicit = 3 : Step = 4 : Property = 5 : Preserve = 6
Echo Default + Error + Explicit + Step + Property + Preserve '= 21
For Step = 1 To 5 Step 2 : Next
Echo Step '= 7
Class C
  Public [end]
  Public Property Get If1 : If1 = 1 : End Property
End Class
Set o = New C
o.end = 4
Echo o.End '= 4
Echo o.IF1 '= 1
