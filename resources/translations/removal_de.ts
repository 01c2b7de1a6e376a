<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>Localizable</name>
    <message>
        <source>Please enter your password to uninstall Quorvelle.</source>
        <translation>Bitte geben Sie Ihr Passwort ein, um Quorvelle zu deinstallieren.</translation>
    </message>
</context>
</TS>
