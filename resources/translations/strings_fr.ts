<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>0 bytes</source>
        <translation>0 octet</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message>
        <source>%llu bytes</source>
        <translation>%llu octets</translation>
    </message>
    <message>
        <source>%1.1f KB</source>
        <translation>%1.1f Ko</translation>
    </message>
    <message>
        <source>%llu KB</source>
        <translation>%llu Ko</translation>
    </message>
    <message>
        <source>%1.1f MB</source>
        <translation>%1.1f Mo</translation>
    </message>
    <message>
        <source>%1.1f GB</source>
        <translation>%1.1f Go</translation>
    </message>
    <message>
        <source>%1.1f TB</source>
        <translation>%1.1f To</translation>
    </message>
    <message>
        <source>1 day</source>
        <translation>1 jour</translation>
    </message>
    <message>
        <source>%llu days</source>
        <translation>%llu jours</translation>
    </message>
    <message>
        <source>1 week</source>
        <translation>1 semaine</translation>
    </message>
    <message>
        <source>%llu weeks</source>
        <translation>%llu semaines</translation>
    </message>
    <message>
        <source>1 month</source>
        <translation>1 mois</translation>
    </message>
    <message>
        <source>%llu months</source>
        <translation>%llu mois</translation>
    </message>
    <message>
        <source>1 year</source>
        <translation>1 an</translation>
    </message>
    <message>
        <source>%llu years</source>
        <translation>%llu ans</translation>
    </message>
</context>
</TS>
