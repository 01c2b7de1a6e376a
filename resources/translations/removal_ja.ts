<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>Localizable</name>
    <message>
        <source>Please enter your password to uninstall Quorvelle.</source>
        <translation>Quorvelle をアンインストールするにはパスワードを入力してください。</translation>
    </message>
</context>
</TS>
