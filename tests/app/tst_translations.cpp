// The program's translations as shipped: every .ts file finished and free of obsolete
// entries, every language carrying the same texts as English, keyboard mnemonics and
// printf/Qt placeholders kept, and the polkit prompt equal to the removal strings.
#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

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
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, {}, file.errorString()};
    QXmlStreamReader xml(&file);
    QString context, source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"TS")
            ts.language = xml.attributes().value(QLatin1String("language")).toString();
        else if (xml.name() == u"name")
            context = xml.readElementText();
        else if (xml.name() == u"source")
            source = xml.readElementText();
        else if (xml.name() == u"translation") // a braced list runs in order: type, then text
            ts.messages.append({context, source,
                                xml.attributes().value(QLatin1String("type")).toString(),
                                xml.readElementText()});
    }
    if (xml.hasError())
        ts.error = xml.errorString();
    return ts;
}

QDir translations()
{
    return QDir(qEnvironmentVariable("QV_SOURCE_DIR") + QStringLiteral("/resources/translations"));
}

// The mnemonic letter of a control text ("&&" is a literal ampersand); empty without one.
QString mnemonic(const QString &text)
{
    static const QRegularExpression marker(QStringLiteral("(?<!&)&([^&])"));
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
        const QStringList files = translations().entryList({QStringLiteral("*.ts")}, QDir::Files);
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

        const QString english = path.section(u'_', 0, -2) + QStringLiteral("_en.ts");
        QSet<QString> expected;
        for (const Message &m : readTs(english).messages)
            expected.insert(m.context + u'\x1f' + m.source);

        QSet<QString> seen;
        QMap<QString, QString> letters; // mnemonic -> source, per window
        for (const Message &m : ts.messages) {
            const QString where = m.context + QStringLiteral(": ") + m.source;
            QVERIFY2(m.type.isEmpty(), qPrintable(m.type + QStringLiteral(" entry, ") + where));
            QVERIFY2(!m.translation.isEmpty(), qPrintable(QStringLiteral("empty, ") + where));
            seen.insert(m.context + u'\x1f' + m.source);
            QCOMPARE(placeholders(m.translation), placeholders(m.source));
            const QString letter = mnemonic(m.translation);
            QCOMPARE(letter.isEmpty(), mnemonic(m.source).isEmpty());
            if (!letter.isEmpty()) {
                QVERIFY2(!letters.contains(letter),
                         qPrintable(QStringLiteral("mnemonic %1 twice: ").arg(letter) + where +
                                    QStringLiteral(" / ") + letters.value(letter)));
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
        for (const Message &m :
             readTs(translations().filePath(QStringLiteral("window_en.ts"))).messages)
            if (m.context == u"SurveyWindow")
                sources.insert(m.source);
        QFile ui(qEnvironmentVariable("QV_SOURCE_DIR") +
                 QStringLiteral("/resources/ui/SurveyWindow.ui"));
        QVERIFY(ui.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&ui);
        int texts = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != u"string" ||
                xml.attributes().value(QLatin1String("notr")) == u"true")
                continue;
            const QString text = xml.readElementText();
            QVERIFY2(sources.contains(text), qPrintable(text));
            ++texts;
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(texts >= 30);
    }

    // polkit shows the policy's own texts: one message per language we translate, each the
    // removal strings' translation of the English prompt.
    void policyPrompt()
    {
        QFile policy(qEnvironmentVariable("QV_SOURCE_DIR") +
                     QStringLiteral("/resources/polkit/net.brelltan.Quorvelle.policy.in"));
        QVERIFY(policy.open(QIODevice::ReadOnly));
        QMap<QString, QString> messages;
        QXmlStreamReader xml(&policy);
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement &&
                xml.name() == QLatin1String("message")) {
                const QString lang = xml.attributes().value(QStringLiteral("xml:lang")).toString();
                messages.insert(lang, xml.readElementText());
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

        QMap<QString, QString> expected;
        const QStringList files =
            translations().entryList({QStringLiteral("removal_*.ts")}, QDir::Files);
        for (const QString &file : files) {
            const QString lang = QFileInfo(file).completeBaseName().section(u'_', 1);
            const TsFile ts = readTs(translations().filePath(file));
            QCOMPARE(ts.messages.size(), 1);
            expected.insert(lang == QLatin1String("en") ? QString() : lang,
                            ts.messages.first().translation);
        }
        QCOMPARE(messages, expected);
    }
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
