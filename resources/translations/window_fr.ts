<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>Localizable</name>
    <message>
        <source>Uninstall Quorvelle</source>
        <translation>Désinstaller Quorvelle</translation>
    </message>
</context>
<context>
    <name>SurveyWindow</name>
    <message>
        <source>We are sorry to see you go. Why are you uninstalling Quorvelle?</source>
        <translation>Nous regrettons votre départ. Pourquoi désinstallez-vous Quorvelle&#xa0;?</translation>
    </message>
    <message>
        <source>The &amp;price is not fair</source>
        <translation>Le &amp;prix n’est pas juste</translation>
    </message>
    <message>
        <source>The price is not fair</source>
        <translation>Le prix n’est pas juste</translation>
    </message>
    <message>
        <source>The price was not &amp;disclosed before I installed it</source>
        <translation>Le prix n’était pas &amp;indiqué avant l’installation</translation>
    </message>
    <message>
        <source>The price was not disclosed before I installed it</source>
        <translation>Le prix n’était pas indiqué avant l’installation</translation>
    </message>
    <message>
        <source>The price is too &amp;high</source>
        <translation>Le prix est trop é&amp;levé</translation>
    </message>
    <message>
        <source>The price is too high</source>
        <translation>Le prix est trop élevé</translation>
    </message>
    <message>
        <source>It does not have the &amp;features I need</source>
        <translation>Il manque des &amp;fonctions dont j’ai besoin</translation>
    </message>
    <message>
        <source>It does not have the features I need</source>
        <translation>Il manque des fonctions dont j’ai besoin</translation>
    </message>
    <message>
        <source>I do &amp;not need its features</source>
        <translation>Je n’ai pas &amp;besoin de ses fonctions</translation>
    </message>
    <message>
        <source>I do not need its features</source>
        <translation>Je n’ai pas besoin de ses fonctions</translation>
    </message>
    <message>
        <source>It is too &amp;complex to use</source>
        <translation>Il est trop &amp;compliqué à utiliser</translation>
    </message>
    <message>
        <source>It is too complex to use</source>
        <translation>Il est trop compliqué à utiliser</translation>
    </message>
    <message>
        <source>It &amp;slowed down my computer</source>
        <translation>Il a &amp;ralenti mon ordinateur</translation>
    </message>
    <message>
        <source>It slowed down my computer</source>
        <translation>Il a ralenti mon ordinateur</translation>
    </message>
    <message>
        <source>Support &amp;quality</source>
        <translation>&amp;Qualité du support</translation>
    </message>
    <message>
        <source>Support quality</source>
        <translation>Qualité du support</translation>
    </message>
    <message>
        <source>Support answered too slo&amp;wly</source>
        <translation>Le support a répondu trop le&amp;ntement</translation>
    </message>
    <message>
        <source>Support answered too slowly</source>
        <translation>Le support a répondu trop lentement</translation>
    </message>
    <message>
        <source>Support was unp&amp;rofessional</source>
        <translation>Le support manquait de pr&amp;ofessionnalisme</translation>
    </message>
    <message>
        <source>Support was unprofessional</source>
        <translation>Le support manquait de professionnalisme</translation>
    </message>
    <message>
        <source>I do not like the &amp;marketing</source>
        <translation>Je n’aime pas le &amp;marketing</translation>
    </message>
    <message>
        <source>I do not like the marketing</source>
        <translation>Je n’aime pas le marketing</translation>
    </message>
    <message>
        <source>&amp;Other reason</source>
        <translation>&amp;Autre raison</translation>
    </message>
    <message>
        <source>Other reason</source>
        <translation>Autre raison</translation>
    </message>
    <message>
        <source>&amp;Tell us more (optional):</source>
        <translation>Di&amp;tes-nous en plus (facultatif)&#xa0;:</translation>
    </message>
    <message>
        <source>Tell us more</source>
        <translation>Dites-nous en plus</translation>
    </message>
    <message>
        <source>Anything else you would like to tell us</source>
        <translation>Tout ce que vous souhaitez encore nous dire</translation>
    </message>
    <message>
        <source>&amp;Get Quorvelle for free</source>
        <translation>Obtenir Quorvelle &amp;gratuitement</translation>
    </message>
    <message>
        <source>Get Quorvelle for free</source>
        <translation>Obtenir Quorvelle gratuitement</translation>
    </message>
    <message>
        <source>Opens the offer in your web browser and keeps Quorvelle installed</source>
        <translation>Ouvre l’offre dans votre navigateur web&#xa0;; Quorvelle reste installé</translation>
    </message>
    <message>
        <source>&amp;Uninstall</source>
        <translation>&amp;Désinstaller</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Désinstaller</translation>
    </message>
    <message>
        <source>Sends your answers and removes Quorvelle</source>
        <translation>Envoie vos réponses et supprime Quorvelle</translation>
    </message>
</context>
<context>
    <name>VXCommandLine</name>
    <message>
        <source>Displays this help and exits.</source>
        <translation>Affiche cette aide et quitte.</translation>
    </message>
    <message>
        <source>Displays the version and exits.</source>
        <translation>Affiche la version et quitte.</translation>
    </message>
    <message>
        <source>Asks why Quorvelle is being uninstalled, then removes the suite. The suite starts it with its uninstall-information file.</source>
        <translation>Demande pourquoi Quorvelle est désinstallé, puis supprime la suite. La suite le lance avec son fichier d’informations de désinstallation.</translation>
    </message>
    <message>
        <source>The uninstall-information file.</source>
        <translation>Le fichier d’informations de désinstallation.</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos; for more information.</source>
        <translation>Essayez «&#xa0;%1 --help&#xa0;» pour plus d’informations.</translation>
    </message>
</context>
</TS>
