' The rest.
Echo ScriptEngine, ScriptEngineMajorVersion, ScriptEngineMinorVersion '= VBScript 5 8
Echo MsgBox("x", vbYesNo, "t"), InputBox("p", "t", "propuesto") '= 1 propuesto
MsgBox "hola"
Set x = CreateObject("Excel.Application") ' error 429
Set x = CreateObject("WScript.Shell") ' error 429
Set x = GetObject("winmgmts:") ' error 429
x = LoadPicture("a.bmp") ' error 481
WScript.Echo "x" ' error 424
Echo vbOKOnly + vbCritical, vbYes, vbCancel, vbTrue, vbFalse, vbUseDefault, vbObjectError '= 16 6 2 -1 0 -2 -2147221504
Echo vbSunday, vbSaturday, vbFirstFourDays, vbTextCompare, vbString, vbShortTime '= 1 7 2 1 8 4
