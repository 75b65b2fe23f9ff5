# The same ten lines in PowerShell, the 32-bit one: C:\Windows\SysWOW64\WindowsPowerShell\v1.0\powershell.exe
#   powershell -STA -File ten_lines.ps1 FOLDER FILE
param([string]$Folder, [string]$File)
$connection = (New-Object -ComObject Kavidex.EmbeddedDatabase).OpenOrCreate("$Folder\kavidex.kdb")
$binder = New-Object -ComObject Kavidex.ctrlCorrespondence
$binder.DbConnection = $connection
$settings = New-Object -ComObject Kavidex.clsSettings
$settings.DbConnection = $connection
$settings.SetSetting('Storage', 'DocumentPath', "$Folder\store")
if ($binder.OpenOrCreate('Client-4711', 'Mr Jansen', 'Letters;Policies', '', '') -ne 0) { exit 1 }
if ($binder.AddFiles(@($File), '', 0, $false, $true) -ne 0) { exit 1 }
"$($binder.ContainsDocuments('txt')) text document(s) in dossier $($binder.Id)"
$binder.CloseObject() | Out-Null
$binder.DbConnection = $null
$connection.Close()
