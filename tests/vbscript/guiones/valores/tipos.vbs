' Subtypes and their names.
Dim sinDim()
Echo TypeName(Empty), TypeName(Null), TypeName(1), TypeName(1.5), TypeName("") '= Empty Null Integer Double String
Echo TypeName(True), TypeName(#1/1/2024#), TypeName(Nothing), TypeName(Array()) '= Boolean Date Nothing Variant()
Echo TypeName(CByte(1)), TypeName(CSng(1)), TypeName(CCur(1)), TypeName(CLng(1)) '= Byte Single Currency Long
Echo VarType(Empty), VarType(Null), VarType(1), VarType(100000), VarType(CSng(1)) '= 0 1 2 3 4
Echo VarType(1.5), VarType(CCur(1)), VarType(Now), VarType("x"), VarType(Nothing) '= 5 6 7 8 9
Echo VarType(True), VarType(CByte(1)), VarType(Array(1)), vbArray + vbVariant '= 11 17 8204 8204
Echo IsArray(sinDim), IsEmpty(x), IsNull(Null), IsObject(Nothing), IsDate("15/3/2024") '= Verdadero Verdadero Verdadero Verdadero Verdadero
Echo IsDate("hola"), IsDate(Now), IsDate("14:30"), IsDate(5), IsDate("31/2/2024") '= Falso Verdadero Verdadero Falso Falso
Echo IsNumeric("1,5"), IsNumeric(" -3 "), IsNumeric("1e3"), IsNumeric("a"), IsNumeric(Empty) '= Verdadero Verdadero Verdadero Falso Verdadero
Echo IsNumeric(True), IsNumeric(Null), IsNumeric(Now) '= Verdadero Falso Falso
