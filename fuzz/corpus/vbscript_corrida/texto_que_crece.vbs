'! budget 7
' New names On Error ÜResume Next
Do : i =  i & "ÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿ= 2" : Loop
