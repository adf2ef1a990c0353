' What an object has not is error 438 however it is asked; more than a member takes is error 450.
Set f = CreateObject("Scripting.FileSystemObject")
Set w = f.CreateTextFile("a.txt", True) : w.WriteLine "uno dos"
Set t = f.OpenTextFile("a.txt")
Set cerrado = f.OpenTextFile("a.txt") : cerrado.Close
Set a = f.GetFile("a.txt")
Set c = f.CreateFolder("sub")
Set d = CreateObject("Scripting.Dictionary") : d("k") = 1
Set r = New RegExp : r.Pattern = "(\w+) (\w+)"
Set ms = r.Execute("uno dos") : Set m = ms(0)

Function Numero(orden)
    On Error Resume Next : Err.Clear
    Execute orden
    Numero = Err.Number
End Function

For Each o In Array("Err", "r", "ms", "m", "m.SubMatches", "d", "f", "t", "w", "cerrado", "a", "c", "c.Files", "c.SubFolders", "Echo")
    s = Numero("x = " & o & ".Nada") & " " & Numero("x = " & o & ".Nada(1, 2)") & " " & Numero(o & ".Nada 1, 2, 3, 4, 5, 6")
    s = s & " " & Numero(o & ".Nada = 1") & " " & Numero(o & ".Nada(1) = 1") & " " & Numero("Set " & o & ".Nada = r")
    If s <> "438 438 438 438 438 438" Then malos = malos & o & ": " & s & "; "
Next
Echo "[" & malos & "]" '= []

' The word of another object is as unknown as any.
For Each orden In Array("x = f.Count", "x = f.Size", "x = f.Item(1)", "x = d.Name", "x = r.Clear", "x = t.Path", "x = w.Copy(1)", "x = a.Files", "x = c.Copy(1)", "x = c.OpenAsTextStream", "x = ms.Length", "x = m.Count", "x = d.Key(1)")
    If Numero(orden) <> 438 Then malas = malas & orden & ": " & Numero(orden) & "; "
Next
Echo "[" & malas & "]" '= []

' One argument too many for each.
sobran = Array("Err.Number(1)", "Err.Description(1)", "Err.Source(1)", "Err.HelpFile(1)", "Err.HelpContext(1)", "Err.Clear(1)", "Err.Raise(5, 1, 1, 1, 1, 1)", _
    "r.Pattern(1)", "r.Global(1)", "r.IgnoreCase(1)", "r.Multiline(1)", "r.Test(1, 2)", "r.Execute(1, 2)", "r.Replace(1, 2, 3)", _
    "ms.Count(7)", "ms.Item(0, 1)", "ms(0, 1)", "m.Value(1)", "m(1)", "m.FirstIndex(1)", "m.Length(1)", "m.SubMatches(0, 1)", "m.SubMatches.Count(1)", "m.SubMatches.Item(0, 1)", _
    "d.Item(1, 2)", "d(1, 2)", "d.Exists(1, 2)", "d.Add(1, 2, 3)", "d.Remove(""k"", 2)", "d.RemoveAll(1)", "d.Count(1)", "d.Keys(1)", "d.Items(1)", "d.CompareMode(1)", _
    "f.FileExists(1, 2)", "f.FolderExists(1, 2)", "f.CreateFolder(1, 2)", "f.GetFile(""a.txt"", 2)", "f.GetFolder(1, 2)", "f.OpenTextFile(""a.txt"", 1, 0, 0, 1)", "f.CreateTextFile(""b.txt"", 1, 0, 1)", "f.BuildPath(1, 2, 3)", _
    "f.GetParentFolderName(1, 2)", "f.GetFileName(1, 2)", "f.GetBaseName(1, 2)", "f.GetExtensionName(1, 2)", "f.GetAbsolutePathName(1, 2)", "f.DeleteFile(""a.txt"", 1, 2)", "f.DeleteFolder(""sub"", 1, 2)", _
    "f.CopyFile(""a.txt"", ""b.txt"", 1, 2)", "f.MoveFile(""a.txt"", ""b.txt"", 1)", _
    "t.Read(1, 2)", "t.ReadLine(1)", "t.ReadAll(1)", "t.Skip(1, 2)", "t.SkipLine(1)", "t.AtEndOfStream(9)", "t.AtEndOfLine(1)", "t.Line(5)", "t.Column(1)", "t.Close(1)", _
    "w.Write(1, 2)", "w.WriteLine(1, 2)", "w.WriteBlankLines(1, 2)", "w.Close(1)", "w.ReadLine(1)", "cerrado.Line(1)", "cerrado.Close(1)", _
    "a.Path(1)", "a(1)", "a.Name(1)", "a.ShortName(1)", "a.ShortPath(1)", "a.Size(1)", "a.Drive(1)", "a.ParentFolder(1)", "a.Attributes(1)", "a.DateCreated(1)", "a.DateLastModified(1)", "a.DateLastAccessed(1)", _
    "a.Copy(""b.txt"", 1, 2)", "a.Move(""b.txt"", 1)", "a.Delete(1, 2)", "a.OpenAsTextStream(1, 0, 1)", _
    "c.Path(1)", "c.Name(1)", "c.Size(1)", "c.Move(""otra"", 1)", "c.Delete(1, 2)", "c.CreateTextFile(""b.txt"", 1, 0, 1)", "c.IsRootFolder(1)", "c.Files(1, 2)", "c.SubFolders(1, 2)", _
    "c.Files.Count(1)", "c.Files.Item(1, 2)", "c.SubFolders.Count(1)", "c.SubFolders.Item(1, 2)")
For Each llamada In sobran
    If Numero("x = " & llamada) <> 450 Then sueltas = sueltas & llamada & ": " & Numero("x = " & llamada) & "; "
Next
Echo "[" & sueltas & "]" '= []
' Nothing of that has been done.
Echo f.FileExists("a.txt"), f.FileExists("b.txt"), f.FolderExists("sub"), d.Count, t.ReadLine '= Verdadero Falso Verdadero 1 uno dos

' Nor is anything assigned that can only be read or called, or with other indexes than it has.
For Each orden In Array("Err.Clear = 1", "r.Test = 1", "ms.Count = 1", "m.Value = 1", "m.SubMatches(0) = 1", "d.Count = 1", "d.Add = 1", "f.FileExists(1) = 1", "t.Line = 1", "w.Close = 1", "a.Size = 1", "c.Files = 1", "c.Files.Item(1) = 1", "Set r.Pattern = r", "Set Err.Number = r", "Set a.Name = r")
    If Numero(orden) <> 438 Then fijas = fijas & orden & ": " & Numero(orden) & "; "
Next
For Each orden In Array("d.Item = 1", "d.Item(1, 2) = 1", "Set d(1, 2) = d", "d.Key = 1", "d.CompareMode(1) = 1", "r.Pattern(1) = 2", "Err.Number(1) = 2", "a.Name(1) = 2")
    If Numero(orden) <> 450 Then fijas = fijas & orden & ": " & Numero(orden) & "; "
Next
Echo "[" & fijas & "]" '= []

' An argument may be an object whose default member changes what it is asked of.
Class Traviesa
    Public Default Function Valor()
        t.Close : w.Close : r.Pattern = "^1$"
        Valor = 1
    End Function
End Class
Set x = New Traviesa
y = t.Read(x) ' error 52
w.Write x ' error 52
Echo r.Test(x), Len(f.OpenTextFile("a.txt").ReadAll) '= Verdadero 9
