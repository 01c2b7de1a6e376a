<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>Localizable</name>
    <message>
        <source>Please enter your password to uninstall Quorvelle.</source>
        <translation>Veuillez saisir votre mot de passe pour désinstaller Quorvelle.</translation>
    </message>
</context>
</TS>
