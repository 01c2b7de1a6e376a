<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>Localizable</name>
    <message>
        <source>Uninstall</source>
        <translation>卸载</translation>
    </message>
</context>
</TS>
