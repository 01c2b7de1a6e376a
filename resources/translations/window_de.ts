<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>Localizable</name>
    <message>
        <source>Uninstall Quorvelle</source>
        <translation>Quorvelle deinstallieren</translation>
    </message>
</context>
<context>
    <name>SurveyWindow</name>
    <message>
        <source>We are sorry to see you go. Why are you uninstalling Quorvelle?</source>
        <translation>Schade, dass Sie gehen. Warum deinstallieren Sie Quorvelle?</translation>
    </message>
    <message>
        <source>The &amp;price is not fair</source>
        <translation>Der &amp;Preis ist nicht fair</translation>
    </message>
    <message>
        <source>The price is not fair</source>
        <translation>Der Preis ist nicht fair</translation>
    </message>
    <message>
        <source>The price was not &amp;disclosed before I installed it</source>
        <translation>Der Preis wurde vorher nicht &amp;genannt</translation>
    </message>
    <message>
        <source>The price was not disclosed before I installed it</source>
        <translation>Der Preis wurde vorher nicht genannt</translation>
    </message>
    <message>
        <source>The price is too &amp;high</source>
        <translation>Der Preis ist zu &amp;hoch</translation>
    </message>
    <message>
        <source>The price is too high</source>
        <translation>Der Preis ist zu hoch</translation>
    </message>
    <message>
        <source>It does not have the &amp;features I need</source>
        <translation>Es fehlen &amp;Funktionen, die ich brauche</translation>
    </message>
    <message>
        <source>It does not have the features I need</source>
        <translation>Es fehlen Funktionen, die ich brauche</translation>
    </message>
    <message>
        <source>I do &amp;not need its features</source>
        <translation>Ich &amp;brauche seine Funktionen nicht</translation>
    </message>
    <message>
        <source>I do not need its features</source>
        <translation>Ich brauche seine Funktionen nicht</translation>
    </message>
    <message>
        <source>It is too &amp;complex to use</source>
        <translation>Es ist zu kompli&amp;ziert</translation>
    </message>
    <message>
        <source>It is too complex to use</source>
        <translation>Es ist zu kompliziert</translation>
    </message>
    <message>
        <source>It &amp;slowed down my computer</source>
        <translation>Es hat meinen Computer &amp;verlangsamt</translation>
    </message>
    <message>
        <source>It slowed down my computer</source>
        <translation>Es hat meinen Computer verlangsamt</translation>
    </message>
    <message>
        <source>Support &amp;quality</source>
        <translation>&amp;Qualität des Supports</translation>
    </message>
    <message>
        <source>Support quality</source>
        <translation>Qualität des Supports</translation>
    </message>
    <message>
        <source>Support answered too slo&amp;wly</source>
        <translation>Der Support hat zu lang&amp;sam geantwortet</translation>
    </message>
    <message>
        <source>Support answered too slowly</source>
        <translation>Der Support hat zu langsam geantwortet</translation>
    </message>
    <message>
        <source>Support was unp&amp;rofessional</source>
        <translation>Der Support war &amp;unprofessionell</translation>
    </message>
    <message>
        <source>Support was unprofessional</source>
        <translation>Der Support war unprofessionell</translation>
    </message>
    <message>
        <source>I do not like the &amp;marketing</source>
        <translation>Mir gefällt das &amp;Marketing nicht</translation>
    </message>
    <message>
        <source>I do not like the marketing</source>
        <translation>Mir gefällt das Marketing nicht</translation>
    </message>
    <message>
        <source>&amp;Other reason</source>
        <translation>Ein &amp;anderer Grund</translation>
    </message>
    <message>
        <source>Other reason</source>
        <translation>Ein anderer Grund</translation>
    </message>
    <message>
        <source>&amp;Tell us more (optional):</source>
        <translation>&amp;Erzählen Sie uns mehr (freiwillig):</translation>
    </message>
    <message>
        <source>Tell us more</source>
        <translation>Erzählen Sie uns mehr</translation>
    </message>
    <message>
        <source>Anything else you would like to tell us</source>
        <translation>Was Sie uns sonst noch sagen möchten</translation>
    </message>
    <message>
        <source>&amp;Get Quorvelle for free</source>
        <translation>Quorvelle &amp;kostenlos erhalten</translation>
    </message>
    <message>
        <source>Get Quorvelle for free</source>
        <translation>Quorvelle kostenlos erhalten</translation>
    </message>
    <message>
        <source>Opens the offer in your web browser and keeps Quorvelle installed</source>
        <translation>Öffnet das Angebot im Webbrowser; Quorvelle bleibt installiert</translation>
    </message>
    <message>
        <source>&amp;Uninstall</source>
        <translation>&amp;Deinstallieren</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Deinstallieren</translation>
    </message>
    <message>
        <source>Sends your answers and removes Quorvelle</source>
        <translation>Sendet Ihre Antworten und entfernt Quorvelle</translation>
    </message>
</context>
<context>
    <name>VXCommandLine</name>
    <message>
        <source>Displays this help and exits.</source>
        <translation>Zeigt diese Hilfe an und beendet das Programm.</translation>
    </message>
    <message>
        <source>Displays the version and exits.</source>
        <translation>Zeigt die Version an und beendet das Programm.</translation>
    </message>
    <message>
        <source>Asks why Quorvelle is being uninstalled, then removes the suite. The suite starts it with its uninstall-information file.</source>
        <translation>Fragt, warum Quorvelle deinstalliert wird, und entfernt dann die Suite. Die Suite startet das Programm mit ihrer Deinstallationsinformationsdatei.</translation>
    </message>
    <message>
        <source>The uninstall-information file.</source>
        <translation>Die Deinstallationsinformationsdatei.</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos; for more information.</source>
        <translation>Weitere Informationen mit »%1 --help«.</translation>
    </message>
</context>
</TS>
