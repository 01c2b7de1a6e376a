<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>Localizable</name>
    <message>
        <source>Uninstall Quorvelle</source>
        <translation>Quorvelle のアンインストール</translation>
    </message>
</context>
<context>
    <name>SurveyWindow</name>
    <message>
        <source>We are sorry to see you go. Why are you uninstalling Quorvelle?</source>
        <translation>ご利用ありがとうございました。Quorvelle をアンインストールする理由を教えてください。</translation>
    </message>
    <message>
        <source>The &amp;price is not fair</source>
        <translation>価格が適正でない(&amp;P)</translation>
    </message>
    <message>
        <source>The price is not fair</source>
        <translation>価格が適正でない</translation>
    </message>
    <message>
        <source>The price was not &amp;disclosed before I installed it</source>
        <translation>インストール前に価格が示されていなかった(&amp;D)</translation>
    </message>
    <message>
        <source>The price was not disclosed before I installed it</source>
        <translation>インストール前に価格が示されていなかった</translation>
    </message>
    <message>
        <source>The price is too &amp;high</source>
        <translation>価格が高すぎる(&amp;H)</translation>
    </message>
    <message>
        <source>The price is too high</source>
        <translation>価格が高すぎる</translation>
    </message>
    <message>
        <source>It does not have the &amp;features I need</source>
        <translation>必要な機能がない(&amp;F)</translation>
    </message>
    <message>
        <source>It does not have the features I need</source>
        <translation>必要な機能がない</translation>
    </message>
    <message>
        <source>I do &amp;not need its features</source>
        <translation>この機能は必要ない(&amp;N)</translation>
    </message>
    <message>
        <source>I do not need its features</source>
        <translation>この機能は必要ない</translation>
    </message>
    <message>
        <source>It is too &amp;complex to use</source>
        <translation>使い方が複雑すぎる(&amp;C)</translation>
    </message>
    <message>
        <source>It is too complex to use</source>
        <translation>使い方が複雑すぎる</translation>
    </message>
    <message>
        <source>It &amp;slowed down my computer</source>
        <translation>コンピュータが遅くなった(&amp;S)</translation>
    </message>
    <message>
        <source>It slowed down my computer</source>
        <translation>コンピュータが遅くなった</translation>
    </message>
    <message>
        <source>Support &amp;quality</source>
        <translation>サポートの品質(&amp;Q)</translation>
    </message>
    <message>
        <source>Support quality</source>
        <translation>サポートの品質</translation>
    </message>
    <message>
        <source>Support answered too slo&amp;wly</source>
        <translation>サポートの回答が遅かった(&amp;W)</translation>
    </message>
    <message>
        <source>Support answered too slowly</source>
        <translation>サポートの回答が遅かった</translation>
    </message>
    <message>
        <source>Support was unp&amp;rofessional</source>
        <translation>サポートの対応が不適切だった(&amp;R)</translation>
    </message>
    <message>
        <source>Support was unprofessional</source>
        <translation>サポートの対応が不適切だった</translation>
    </message>
    <message>
        <source>I do not like the &amp;marketing</source>
        <translation>マーケティングが好きではない(&amp;M)</translation>
    </message>
    <message>
        <source>I do not like the marketing</source>
        <translation>マーケティングが好きではない</translation>
    </message>
    <message>
        <source>&amp;Other reason</source>
        <translation>その他の理由(&amp;O)</translation>
    </message>
    <message>
        <source>Other reason</source>
        <translation>その他の理由</translation>
    </message>
    <message>
        <source>&amp;Tell us more (optional):</source>
        <translation>詳しく教えてください(任意)(&amp;T):</translation>
    </message>
    <message>
        <source>Tell us more</source>
        <translation>詳しく教えてください</translation>
    </message>
    <message>
        <source>Anything else you would like to tell us</source>
        <translation>ほかにお伝えいただきたいこと</translation>
    </message>
    <message>
        <source>&amp;Get Quorvelle for free</source>
        <translation>Quorvelle を無料で入手(&amp;G)</translation>
    </message>
    <message>
        <source>Get Quorvelle for free</source>
        <translation>Quorvelle を無料で入手</translation>
    </message>
    <message>
        <source>Opens the offer in your web browser and keeps Quorvelle installed</source>
        <translation>Web ブラウザでオファーを開きます。Quorvelle はインストールされたままです</translation>
    </message>
    <message>
        <source>&amp;Uninstall</source>
        <translation>アンインストール(&amp;U)</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>アンインストール</translation>
    </message>
    <message>
        <source>Sends your answers and removes Quorvelle</source>
        <translation>回答を送信して Quorvelle を削除します</translation>
    </message>
</context>
<context>
    <name>VXCommandLine</name>
    <message>
        <source>Displays this help and exits.</source>
        <translation>このヘルプを表示して終了します。</translation>
    </message>
    <message>
        <source>Displays the version and exits.</source>
        <translation>バージョンを表示して終了します。</translation>
    </message>
    <message>
        <source>Asks why Quorvelle is being uninstalled, then removes the suite. The suite starts it with its uninstall-information file.</source>
        <translation>Quorvelle をアンインストールする理由を尋ねてから、スイートを削除します。スイートはアンインストール情報ファイルを指定してこのプログラムを起動します。</translation>
    </message>
    <message>
        <source>The uninstall-information file.</source>
        <translation>アンインストール情報ファイル。</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos; for more information.</source>
        <translation>詳しくは &apos;%1 --help&apos; を実行してください。</translation>
    </message>
</context>
</TS>
