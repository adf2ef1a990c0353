' Scripting.FileSystemObject, in its one folder.
Set f = CreateObject("Scripting.FileSystemObject")
Set t = f.CreateTextFile("C:\prueba.txt", True)
t.WriteLine "línea uno" : t.Write "dos" & vbCrLf & "tres" : t.Close
Echo f.FileExists("prueba.txt"), f.FileExists("no.txt"), f.FolderExists(".") '= Verdadero Falso Verdadero
Set t = f.OpenTextFile("\prueba.txt")
Echo t.ReadLine, t.AtEndOfStream, t.ReadLine, t.ReadAll, t.AtEndOfStream '= línea uno Falso dos tres Verdadero
x = t.ReadLine ' error 62
t.Write "x" ' error 54
t.Close
x = t.ReadLine ' error 52
Set t = f.OpenTextFile("prueba.txt", 8) : t.WriteLine "!" : t.Close
Set t = f.OpenTextFile("prueba.txt", 1)
x = t.ReadAll : t.Close : Echo Right(x, 7) = "tres!" & vbCrLf, Len(x) '= Verdadero 23
Set t = f.OpenTextFile("nuevo.txt", 2, True) : t.WriteBlankLines 2 : t.Close
Set t = f.OpenTextFile("nuevo.txt") : Echo Len(t.Read(3)), t.Line '= 3 1
t.Close
Set t = f.OpenTextFile("falta.txt") ' error 53
Set t = f.OpenTextFile("..\afuera.txt", 2, True) ' error 70
Set t = f.OpenTextFile("sub\..\..\afuera.txt", 2, True) ' error 70
Set t = f.CreateTextFile("no\existe.txt") ' error 76
f.CreateFolder "sub" : Echo f.FolderExists("sub") '= Verdadero
f.CreateFolder "sub" ' error 58
f.CopyFile "prueba.txt", "sub\copia.txt" : Echo f.FileExists("sub\copia.txt") '= Verdadero
f.MoveFile "sub\copia.txt", "movida.txt" : Echo f.FileExists("movida.txt"), f.FileExists("sub/copia.txt") '= Verdadero Falso
f.DeleteFile "movida.txt" : Echo f.FileExists("movida.txt") '= Falso
f.DeleteFile "movida.txt" ' error 53
f.DeleteFolder "." ' error 70
Set t = f.CreateTextFile("prueba.txt", False) ' error 58
Echo f.BuildPath("a", "b.txt"), f.GetFileName("C:\x\y.txt"), f.GetBaseName("x\y.txt"), f.GetExtensionName("y.txt"), f.GetParentFolderName("C:\x\y.txt") '= a\b.txt y.txt y txt C:\x
f.Format ' error 438
x = f.Drives ' error 438
