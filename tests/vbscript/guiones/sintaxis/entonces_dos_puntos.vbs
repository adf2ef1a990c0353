' "Then :" opens a block, with a statement behind it or without.
If True Then :
  Echo "uno" '= uno
End If
If False Then : Echo "no"
  Echo "no"
Else : Echo "dos" '= dos
End If
If True Then : x = 1 : Else : x = 2 : End If
Echo x '= 1
If x = 2 Then :: ElseIf x = 1 Then : Echo "tres" '= tres
End If
