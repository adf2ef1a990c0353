' File, Folder and their collections. Paths have no drive and begin at the script's folder.
Set f = CreateObject("Scripting.FileSystemObject")
f.CreateTextFile("C:\b.txt").Write "12345"
f.CreateTextFile("a.txt").Write "123"
Set c = f.CreateFolder("sub") : Echo TypeName(c), c, c.Name '= Folder \sub sub
c.CreateTextFile("dentro.txt").WriteLine "1234567890"
Set a = f.GetFile("D:\sub\dentro.txt")
Echo TypeName(a), a, a.Path, a.Name, a.ParentFolder, a.Size, a.Attributes '= File \sub\dentro.txt \sub\dentro.txt dentro.txt \sub 12 32
Echo IsDate(a.DateLastModified), DateDiff("yyyy", a.DateLastModified, #1/1/2020#) < 0, a.DateCreated = a.DateLastModified '= Verdadero Verdadero Verdadero
Set raiz = f.GetFolder("\")
Echo raiz, raiz.IsRootFolder, c.IsRootFolder, raiz.ParentFolder Is Nothing, c.ParentFolder '= \ Verdadero Falso Verdadero \
Echo raiz.Files.Count, raiz.SubFolders.Count, raiz.Size, c.Size, c.Attributes '= 2 1 20 12 16
For Each x In raiz.Files : s = s & x.Name & ":" & x.Size & ";" : Next
Echo s '= a.txt:3;b.txt:5;
For Each x In raiz.SubFolders : Echo x, TypeName(x), x.Files.Item("dentro.txt").Size '= \sub Folder 12
Next
Echo TypeName(raiz.Files), TypeName(raiz.SubFolders), raiz.Files("a.txt").Path '= Files Folders \a.txt
a.Copy "copia.txt" : Echo f.FileExists("copia.txt"), a.Path '= Verdadero \sub\dentro.txt
a.Copy "copia.txt", False ' error 58
a.Copy "\sub\..\otra.txt", False : Echo f.GetFile("otra.txt").Size '= 12
a.Move "\" : Echo a.Path, f.FileExists("sub\dentro.txt") '= \dentro.txt Falso
a.Name = "final.txt" : Echo a.Path, f.FileExists("final.txt") '= \final.txt Verdadero
a.Name = "..\x" ' error 5
Set t = a.OpenAsTextStream(8) : t.Write "!" : t.Close : Echo a.Size, a.OpenAsTextStream.ReadLine '= 13 1234567890
a.Delete : Echo f.FileExists("final.txt") '= Falso
x = a.Size ' error 53
x = a.DateLastModified ' error 53
a.Delete ' error 53
c.Name = "nuevo" : Echo c.Path, f.FolderExists("sub"), f.FolderExists("nuevo") '= \nuevo Falso Verdadero
raiz.Move "nuevo\x" ' error 70
raiz.Delete ' error 70
Set b = f.GetFile("b.txt")
b.Copy "..\afuera.txt" ' error 70
b.Move "..\" ' error 70
b.Copy "no\hay.txt" ' error 76
Set x = f.GetFile("nada.txt") ' error 53
Set x = f.GetFile("nuevo") ' error 53
Set x = f.GetFolder("b.txt") ' error 76
Set x = f.GetFolder("..") ' error 70
Set x = f.GetFile("nuevo\..\..\b.txt") ' error 70
x = raiz.Files("nada.txt") ' error 53
x = raiz.Files.Item ' error 450
b.Size = 3 ' error 438
x = b.Nada ' error 438
x = raiz.Nada ' error 438
x = b.Size(1) ' error 450
Echo f.GetAbsolutePathName("c:\a\.\b\..\x.txt"), f.GetAbsolutePathName("..") '= \a\x.txt \
c.Delete : Echo f.FolderExists("nuevo") '= Falso
