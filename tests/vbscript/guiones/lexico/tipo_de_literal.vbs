' A literal's subtype follows its value.
Echo &h10&, TypeName(&h10&), TypeName(&h10) '= 16 Integer Integer
Echo &HFFFF, TypeName(&HFFFF), &HFFFF&, TypeName(&HFFFF&) '= -1 Integer 65535 Long
Echo &H7FFF&, TypeName(&H7FFF&), &H8000&, TypeName(&H8000&), TypeName(&H8000) '= 32767 Integer 32768 Long Long
Echo &O17&, TypeName(&O17&), &HFFFFFFFF&, TypeName(&HFFFFFFFF) '= 15 Integer -1 Long
Echo TypeName(32767), TypeName(32768), TypeName(2147483647), TypeName(2147483648) '= Integer Long Long Double
