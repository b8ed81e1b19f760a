@echo off
rem registrar-usuario.cmd [/quitar]
rem Registra las DLL de esta carpeta para el usuario actual, sin permisos de administrador; con /quitar deshace
rem el registro del usuario. Termina con 0 si todo ha ido bien y con 1 si no.
setlocal
set "clases=HKCU\Software\Classes"
set "nombre=PXTarvo.PXTarvor"
set "clase={0323E9E2-852F-4D87-9697-7A61900CBE72}"
set "biblioteca={56AECE39-6A3D-404F-8A61-C5C9D5AF9D15}"
set "interfaz={FCBAAA4C-E784-4554-A9F7-DC32176770BE}"
set "carpeta=%~dp0"
set "fallo=0"
set "bits=32"
if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" set bits=64
if defined PROCESSOR_ARCHITEW6432 set bits=64

if /i "%~1"=="/quitar" goto quitar
if not "%~1"=="" goto uso
if not exist "%carpeta%x86\PXTarvo.dll" goto falta
if %bits%==64 if not exist "%carpeta%x64\PXTarvo.dll" goto falta

call :valor "%nombre%" "%nombre%"
call :valor "%nombre%\CLSID" "%clase%"
call :valor "TypeLib\%biblioteca%\1.0" "PXTarvo"
call :valor "TypeLib\%biblioteca%\1.0\FLAGS" "0"
call :valor "TypeLib\%biblioteca%\1.0\0\win32" "%carpeta%x86\PXTarvo.dll"
if %bits%==64 call :valor "TypeLib\%biblioteca%\1.0\0\win64" "%carpeta%x64\PXTarvo.dll"
if %bits%==32 call :vista "%carpeta%x86\PXTarvo.dll"
if %bits%==64 call :vista "%carpeta%x86\PXTarvo.dll" /reg:32
if %bits%==64 call :vista "%carpeta%x64\PXTarvo.dll" /reg:64
if %fallo%==1 goto fallido
echo PXTarvo queda registrado para %USERNAME%.
exit /b 0

:quitar
call :borrar "%nombre%"
call :borrar "TypeLib\%biblioteca%"
if %bits%==32 call :borrarvista
if %bits%==64 call :borrarvista /reg:32
if %bits%==64 call :borrarvista /reg:64
if %fallo%==1 goto fallido
echo PXTarvo ya no consta en el registro de %USERNAME%.
exit /b 0

rem La clase y la interfaz en una de las vistas del registro: DLL [/reg:32 o /reg:64]
:vista
call :valor "CLSID\%clase%" "%nombre%" %2
call :valor "CLSID\%clase%\InprocServer32" "%~1" %2
reg add "%clases%\CLSID\%clase%\InprocServer32" /v ThreadingModel /d Apartment /f %2 >nul 2>&1
if errorlevel 1 set fallo=1
call :valor "CLSID\%clase%\ProgID" "%nombre%" %2
call :valor "CLSID\%clase%\Programmable" "" %2
call :valor "CLSID\%clase%\TypeLib" "%biblioteca%" %2
call :valor "CLSID\%clase%\Version" "1.0" %2
call :valor "Interface\%interfaz%" "_PXTarvor" %2
call :valor "Interface\%interfaz%\ProxyStubClsid32" "{00020424-0000-0000-C000-000000000046}" %2
call :valor "Interface\%interfaz%\TypeLib" "%biblioteca%" %2
reg add "%clases%\Interface\%interfaz%\TypeLib" /v Version /d 1.0 /f %2 >nul 2>&1
if errorlevel 1 set fallo=1
exit /b 0

:borrarvista
call :borrar "CLSID\%clase%" %1
call :borrar "Interface\%interfaz%" %1
exit /b 0

:valor
reg add "%clases%\%~1" /ve /d "%~2" /f %3 >nul 2>&1
if errorlevel 1 set fallo=1
exit /b 0

:borrar
reg query "%clases%\%~1" %2 >nul 2>&1
if errorlevel 1 exit /b 0
reg delete "%clases%\%~1" /f %2 >nul 2>&1
if errorlevel 1 set fallo=1
exit /b 0

:uso
echo Uso: registrar-usuario.cmd [/quitar]
exit /b 1
:falta
echo Falta PXTarvo.dll en "%carpeta%x86" o en "%carpeta%x64": descomprima antes todo el archivo.
exit /b 1
:fallido
echo No se ha podido cambiar el registro de %USERNAME%.
exit /b 1
