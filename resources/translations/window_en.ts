<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Uninstall Quorvelle</source>
        <translation>Uninstall Quorvelle</translation>
    </message>
</context>
<context>
    <name>SurveyWindow</name>
    <message>
        <source>We are sorry to see you go. Why are you uninstalling Quorvelle?</source>
        <translation>We are sorry to see you go. Why are you uninstalling Quorvelle?</translation>
    </message>
    <message>
        <source>The &amp;price is not fair</source>
        <translation>The &amp;price is not fair</translation>
    </message>
    <message>
        <source>The price is not fair</source>
        <translation>The price is not fair</translation>
    </message>
    <message>
        <source>The price was not &amp;disclosed before I installed it</source>
        <translation>The price was not &amp;disclosed before I installed it</translation>
    </message>
    <message>
        <source>The price was not disclosed before I installed it</source>
        <translation>The price was not disclosed before I installed it</translation>
    </message>
    <message>
        <source>The price is too &amp;high</source>
        <translation>The price is too &amp;high</translation>
    </message>
    <message>
        <source>The price is too high</source>
        <translation>The price is too high</translation>
    </message>
    <message>
        <source>It does not have the &amp;features I need</source>
        <translation>It does not have the &amp;features I need</translation>
    </message>
    <message>
        <source>It does not have the features I need</source>
        <translation>It does not have the features I need</translation>
    </message>
    <message>
        <source>I do &amp;not need its features</source>
        <translation>I do &amp;not need its features</translation>
    </message>
    <message>
        <source>I do not need its features</source>
        <translation>I do not need its features</translation>
    </message>
    <message>
        <source>It is too &amp;complex to use</source>
        <translation>It is too &amp;complex to use</translation>
    </message>
    <message>
        <source>It is too complex to use</source>
        <translation>It is too complex to use</translation>
    </message>
    <message>
        <source>It &amp;slowed down my computer</source>
        <translation>It &amp;slowed down my computer</translation>
    </message>
    <message>
        <source>It slowed down my computer</source>
        <translation>It slowed down my computer</translation>
    </message>
    <message>
        <source>Support &amp;quality</source>
        <translation>Support &amp;quality</translation>
    </message>
    <message>
        <source>Support quality</source>
        <translation>Support quality</translation>
    </message>
    <message>
        <source>Support answered too slo&amp;wly</source>
        <translation>Support answered too slo&amp;wly</translation>
    </message>
    <message>
        <source>Support answered too slowly</source>
        <translation>Support answered too slowly</translation>
    </message>
    <message>
        <source>Support was unp&amp;rofessional</source>
        <translation>Support was unp&amp;rofessional</translation>
    </message>
    <message>
        <source>Support was unprofessional</source>
        <translation>Support was unprofessional</translation>
    </message>
    <message>
        <source>I do not like the &amp;marketing</source>
        <translation>I do not like the &amp;marketing</translation>
    </message>
    <message>
        <source>I do not like the marketing</source>
        <translation>I do not like the marketing</translation>
    </message>
    <message>
        <source>&amp;Other reason</source>
        <translation>&amp;Other reason</translation>
    </message>
    <message>
        <source>Other reason</source>
        <translation>Other reason</translation>
    </message>
    <message>
        <source>&amp;Tell us more (optional):</source>
        <translation>&amp;Tell us more (optional):</translation>
    </message>
    <message>
        <source>Tell us more</source>
        <translation>Tell us more</translation>
    </message>
    <message>
        <source>Anything else you would like to tell us</source>
        <translation>Anything else you would like to tell us</translation>
    </message>
    <message>
        <source>&amp;Get Quorvelle for free</source>
        <translation>&amp;Get Quorvelle for free</translation>
    </message>
    <message>
        <source>Get Quorvelle for free</source>
        <translation>Get Quorvelle for free</translation>
    </message>
    <message>
        <source>Opens the offer in your web browser and keeps Quorvelle installed</source>
        <translation>Opens the offer in your web browser and keeps Quorvelle installed</translation>
    </message>
    <message>
        <source>&amp;Uninstall</source>
        <translation>&amp;Uninstall</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Uninstall</translation>
    </message>
    <message>
        <source>Sends your answers and removes Quorvelle</source>
        <translation>Sends your answers and removes Quorvelle</translation>
    </message>
</context>
<context>
    <name>VXCommandLine</name>
    <message>
        <source>Displays this help and exits.</source>
        <translation>Displays this help and exits.</translation>
    </message>
    <message>
        <source>Displays the version and exits.</source>
        <translation>Displays the version and exits.</translation>
    </message>
    <message>
        <source>Asks why Quorvelle is being uninstalled, then removes the suite. The suite starts it with its uninstall-information file.</source>
        <translation>Asks why Quorvelle is being uninstalled, then removes the suite. The suite starts it with its uninstall-information file.</translation>
    </message>
    <message>
        <source>The uninstall-information file.</source>
        <translation>The uninstall-information file.</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos; for more information.</source>
        <translation>Try &apos;%1 --help&apos; for more information.</translation>
    </message>
</context>
</TS>
