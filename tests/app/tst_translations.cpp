// The program's translations as shipped: every .ts file finished and free of obsolete
// entries, every language carrying the same texts as English, keyboard mnemonics and
// printf/Qt placeholders kept, and the polkit prompt equal to the removal strings.
#include "Tools.h"

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Message
{
    QString context, source, type, translation;
};

struct TsFile
{
    QString language;
    QList<Message> messages;
    QString error;
};

TsFile readTs(const QString &path)
{
    TsFile ts;
    QString context, source;
    ts.error = Tools::forEachElement(path, [&](QXmlStreamReader &xml) {
        if (xml.name() == u"TS")
            ts.language = xml.attributes().value("language"_L1).toString();
        else if (xml.name() == u"name")
            context = xml.readElementText();
        else if (xml.name() == u"source")
            source = xml.readElementText();
        else if (xml.name() == u"translation") // a braced list runs in order: type, then text
            ts.messages.append({context, source, xml.attributes().value("type"_L1).toString(),
                                xml.readElementText()});
    });
    return ts;
}

QDir translations()
{
    return QDir(qEnvironmentVariable("QV_SOURCE_DIR") + u"/resources/translations"_s);
}

// The mnemonic letter of a control text ("&&" is a literal ampersand); empty without one.
QString mnemonic(const QString &text)
{
    static const QRegularExpression marker(u"(?<!&)&([^&])"_s);
    const QRegularExpressionMatch m = marker.match(text);
    return m.hasMatch() ? m.captured(1).toLower() : QString();
}

// printf conversions and Qt's %1..%99 markers, in order.
QStringList placeholders(const QString &text)
{
    static const QRegularExpression marker(QStringLiteral(
        "%(?:[0-9]{1,2}(?![0-9.]*[a-z])|[-+ #0]*[0-9]*(?:\\.[0-9]+)?(?:ll|l|h)?[diouxXfeEgGs])"));
    QStringList found;
    for (auto it = marker.globalMatch(text); it.hasNext();)
        found.append(it.next().captured(0));
    return found;
}

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void files_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList files = translations().entryList({u"*.ts"_s}, QDir::Files);
        QVERIFY(files.size() >= 12); // three groups, four languages at least
        for (const QString &file : files)
            QTest::newRow(qPrintable(file)) << translations().filePath(file);
    }

    void files()
    {
        QFETCH(QString, path);
        const TsFile ts = readTs(path);
        QVERIFY2(ts.error.isEmpty(), qPrintable(ts.error));
        QVERIFY(!ts.messages.isEmpty());
        // <group>_<lang>.ts: the file's language is the one its name says.
        const QString lang = QFileInfo(path).completeBaseName().section(u'_', 1);
        QVERIFY2(ts.language.startsWith(lang), qPrintable(ts.language));

        const QString english = path.section(u'_', 0, -2) + u"_en.ts"_s;
        QSet<QString> expected;
        for (const Message &m : readTs(english).messages)
            expected.insert(m.context + u'\x1f' + m.source);

        QSet<QString> seen;
        QMap<QString, QString> letters; // mnemonic -> source, per window
        for (const Message &m : ts.messages) {
            const QString where = m.context + u": "_s + m.source;
            QVERIFY2(m.type.isEmpty(), qPrintable(m.type + u" entry, "_s + where));
            QVERIFY2(!m.translation.isEmpty(), qPrintable(u"empty, "_s + where));
            seen.insert(m.context + u'\x1f' + m.source);
            QCOMPARE(placeholders(m.translation), placeholders(m.source));
            const QString letter = mnemonic(m.translation);
            QCOMPARE(letter.isEmpty(), mnemonic(m.source).isEmpty());
            if (!letter.isEmpty()) {
                QVERIFY2(!letters.contains(letter),
                         qPrintable(u"mnemonic %1 twice: "_s.arg(letter) + where + u" / "_s +
                                    letters.value(letter)));
                letters.insert(letter, m.source);
            }
        }
        QCOMPARE(seen, expected);
    }

    // Every translatable text of the window's description is in its English strings under
    // the description's class, the context the loader translates it in; files() then holds
    // every language to those strings.
    void windowDescription()
    {
        QSet<QString> sources;
        for (const Message &m : readTs(translations().filePath(u"window_en.ts"_s)).messages)
            if (m.context == u"SurveyWindow")
                sources.insert(m.source);
        QStringList texts;
        const QString error = Tools::forEachElement(
            qEnvironmentVariable("QV_SOURCE_DIR") + u"/resources/ui/SurveyWindow.ui"_s,
            [&texts](QXmlStreamReader &xml) {
                if (xml.name() == u"string" && xml.attributes().value("notr"_L1) != u"true")
                    texts.append(xml.readElementText());
            });
        QVERIFY2(error.isNull(), qPrintable(error));
        QVERIFY(texts.size() >= 30);
        for (const QString &text : texts)
            QVERIFY2(sources.contains(text), qPrintable(text));
    }

    // polkit shows the policy's own texts: one message per language we translate, each the
    // removal strings' translation of the English prompt.
    void policyPrompt()
    {
        QMap<QString, QString> messages;
        const QString error =
            Tools::forEachElement(qEnvironmentVariable("QV_SOURCE_DIR") +
                                      u"/resources/polkit/net.brelltan.Quorvelle.policy.in"_s,
                                  [&messages](QXmlStreamReader &xml) {
                                      if (xml.name() != "message"_L1)
                                          return;
                                      // Before the text: reading it moves the reader past the
                                      // attributes.
                                      const QString lang =
                                          xml.attributes().value(u"xml:lang"_s).toString();
                                      messages.insert(lang, xml.readElementText());
                                  });
        QVERIFY2(error.isNull(), qPrintable(error));

        QMap<QString, QString> expected;
        const QStringList files = translations().entryList({u"removal_*.ts"_s}, QDir::Files);
        for (const QString &file : files) {
            const QString lang = QFileInfo(file).completeBaseName().section(u'_', 1);
            const TsFile ts = readTs(translations().filePath(file));
            QCOMPARE(ts.messages.size(), 1);
            expected.insert(lang == "en"_L1 ? QString() : lang, ts.messages.first().translation);
        }
        QCOMPARE(messages, expected);
    }
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
