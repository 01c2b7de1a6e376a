<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>0 bytes</source>
        <translation>0 バイト</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 バイト</translation>
    </message>
    <message>
        <source>%llu bytes</source>
        <translation>%llu バイト</translation>
    </message>
    <message>
        <source>%1.1f KB</source>
        <translation>%1.1f KB</translation>
    </message>
    <message>
        <source>%llu KB</source>
        <translation>%llu KB</translation>
    </message>
    <message>
        <source>%1.1f MB</source>
        <translation>%1.1f MB</translation>
    </message>
    <message>
        <source>%1.1f GB</source>
        <translation>%1.1f GB</translation>
    </message>
    <message>
        <source>%1.1f TB</source>
        <translation>%1.1f TB</translation>
    </message>
    <message>
        <source>1 day</source>
        <translation>1 日</translation>
    </message>
    <message>
        <source>%llu days</source>
        <translation>%llu 日</translation>
    </message>
    <message>
        <source>1 week</source>
        <translation>1 週間</translation>
    </message>
    <message>
        <source>%llu weeks</source>
        <translation>%llu 週間</translation>
    </message>
    <message>
        <source>1 month</source>
        <translation>1 か月</translation>
    </message>
    <message>
        <source>%llu months</source>
        <translation>%llu か月</translation>
    </message>
    <message>
        <source>1 year</source>
        <translation>1 年</translation>
    </message>
    <message>
        <source>%llu years</source>
        <translation>%llu 年</translation>
    </message>
</context>
</TS>
