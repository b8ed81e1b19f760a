' What a script sees of the plug-in: the context is Nothing at first, and reads back as what was set.
Class Context
    Public Name
End Class

Sub Require(Condition, Text)
    If Not Condition Then
        WScript.Echo "wrong: " & Text
        WScript.Quit 1
    End If
End Sub

Dim Instance, First, Second
Set Instance = CreateObject("PXTarvo.PXTarvor")
Require Instance.MyBd Is Nothing, "a context before one was set"
Set First = New Context
Set Second = New Context
Set Instance.MyBd = First
Require Instance.MyBd Is First, "not the first context"
Set Instance.MyBd = Second
Require Instance.MyBd Is Second, "not the second context"
Set Instance.MyBd = Nothing
Require Instance.MyBd Is Nothing, "a context after Nothing was set"
Set Instance = Nothing
WScript.Echo "done"
