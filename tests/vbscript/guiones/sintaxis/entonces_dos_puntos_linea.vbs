' A text in which the block would never end: each is a line, as some wrote it.
If True Then : Echo "uno" '= uno
If False Then : x = "no" : Else Echo "dos" '= dos
