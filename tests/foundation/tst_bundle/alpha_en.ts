<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>Only in English</source>
        <translation>English wording</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Uninstall Now</translation>
    </message>
</context>
</TS>
