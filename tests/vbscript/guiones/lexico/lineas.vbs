' Lines, separators, comments, continuation.
: :x = 1 ::
Echo x '= 1
x = 2 : Rem the rest is a comment : x = 3
Echo x '= 2
Rem x = 4
y = _
   5
Echo y '= 5
z = 1 + _   
    2 _
    + 3
Echo z '= 6
Function Largo(a, _
               b)
  Largo = a _
    & b
End Function
w = Largo("a", _
  "b")
Echo w '= ab
Echo "it's: _ fine" '= it's: _ fine
eNd_ = 3 : Echo END_ '= 3
