' Host objects look like any other.
Set x = Echo : Set eco = x
x.Nada 1 ' error 438
x.Nada = 1 ' error 438
y = x.Nada ' error 438
Echo TypeName(x), x Is eco '= Object Verdadero
