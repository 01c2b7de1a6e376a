// The guides' examples do what the guides say, checked against independent oracles:
// QJsonDocument for the JSON text, QUrl for the escaping, libcrypto for the sealed data,
// the Qt Linguist sources for the translations, a fake machine for the system information,
// the palette's documented values and pixels of what the widgets draw.
#include "FakeMachine.h"
#include "Snippets.h"
#include "WidgetsSnippets.h"
#include "ui_widgets.h"

#include <Quorvelle/Foundation/Bundle.h>
#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXFlatButtonCell.h>
#include <Quorvelle/Widgets/VXFlatRadioButtonCell.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>
#include <Quorvelle/Widgets/VXQuorvelleFont.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSettings>
#include <QTableView>
#include <QUrl>
#include <QXmlStreamReader>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The translation of a source text in resources/translations/<group>_<lang>.ts.
QString translationInSource(const QString &group, const QString &language, const QString &source)
{
    QFile file(qEnvironmentVariable("QV_SOURCE_DIR") + QStringLiteral("/resources/translations/") +
               group + u'_' + language + QStringLiteral(".ts"));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("<no %1>").arg(file.fileName());
    QXmlStreamReader xml(&file);
    QString lastSource;
    while (xml.readNextStartElement() || !xml.atEnd()) {
        if (xml.name() == QLatin1String("source"))
            lastSource = xml.readElementText();
        else if (xml.name() == QLatin1String("translation") && lastSource == source)
            return xml.readElementText();
        else if (!xml.isStartElement())
            xml.readNext();
    }
    return QStringLiteral("<no translation>");
}

using PKey = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

// RSA PKCS #1 v1.5 decryption of whole blocks by libcrypto itself.
QByteArray decryptBlocks(EVP_PKEY *key, const QByteArray &sealed)
{
    const int block = EVP_PKEY_get_size(key);
    QByteArray plain;
    for (qsizetype at = 0; at + block <= sealed.size(); at += block) {
        std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> context(
            EVP_PKEY_CTX_new(key, nullptr), EVP_PKEY_CTX_free);
        unsigned char out[512];
        size_t length = sizeof out;
        if (EVP_PKEY_decrypt_init(context.get()) <= 0 ||
            EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) <= 0 ||
            EVP_PKEY_decrypt(context.get(), out, &length,
                             reinterpret_cast<const unsigned char *>(sealed.constData() + at),
                             size_t(block)) <= 0)
            return QByteArray("<undecryptable>");
        plain.append(reinterpret_cast<const char *>(out), qsizetype(length));
    }
    return plain;
}

} // namespace

class tst_DocSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Quorvelle::Bundle::setPreferredLanguagesForTesting(QStringList{u"en"_s});
    }
    void cleanupTestCase() { Quorvelle::Bundle::setPreferredLanguagesForTesting(std::nullopt); }

    void readJson_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("settings")
            << QStringLiteral(R"({"name": "Backup", "retries": 3, "paths": ["/a", "/b"]})")
            << QStringLiteral("Backup: 3 retries, 2 paths");
        QTest::newRow("members missing")
            << QStringLiteral("{}") << QStringLiteral(": 0 retries, 0 paths");
        QTest::newRow("real truncated") << QStringLiteral(R"({"name":"x","retries":2.9})")
                                        << QStringLiteral("x: 2 retries, 0 paths");
        QTest::newRow("an array") << QStringLiteral("[1]") << QStringLiteral("not a JSON object");
        QTest::newRow("unclosed") << QStringLiteral(R"({"name": "Backup")")
                                  << QStringLiteral("not a JSON object");
        QTest::newRow("nil text") << QString() << QStringLiteral("not a JSON object");
    }
    void readJson()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(Snippets::describeSettings(text), expected);
    }

    void writeJson_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("contact");
        QTest::newRow("plain") << QStringLiteral("Too expensive") << true;
        QTest::newRow("quotes, line break, tab")
            << QStringLiteral("He said \"no\"\n\tthen left\\") << false;
        QTest::newRow("non-ASCII") << QStringLiteral("zu teuer, 高すぎる 😀") << true;
    }
    void writeJson()
    {
        QFETCH(QString, reason);
        QFETCH(bool, contact);
        const QString payload = Snippets::answersPayload(reason, contact);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(payload.toUtf8(), &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(payload));
        QCOMPARE(document.object(), (QJsonObject{{u"reason"_s, reason},
                                                 {u"contact"_s, contact ? 1 : 0},
                                                 {u"choices"_s, QJsonArray{1, 3}},
                                                 {u"version"_s, 2}}));
        // Members in insertion order, no whitespace.
        QVERIFY2(payload.startsWith(QStringLiteral("{\"reason\":")), qPrintable(payload));
        QVERIFY2(payload.endsWith(QStringLiteral(",\"version\":2}")), qPrintable(payload));
    }

    void strings_data()
    {
        QTest::addColumn<quint64>("bytes");
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("size");
        QTest::newRow("megabytes") << quint64(4200000) << QStringLiteral("ann.lee+tag@example.org")
                                   << QStringLiteral("4.2 MB");
        QTest::newRow("bytes, blanks and non-ASCII")
            << quint64(512) << QStringLiteral("zoë (home)@example.de")
            << QStringLiteral("512 bytes");
        QTest::newRow("not an address") << quint64(1) << QStringLiteral("ann.lee") << QString();
    }
    void strings()
    {
        QFETCH(quint64, bytes);
        QFETCH(QString, email);
        QFETCH(QString, size);
        const QString expected =
            size.isNull() ? QStringLiteral("no valid address")
                          : size + QStringLiteral(" to ") +
                                QString::fromLatin1(QUrl::toPercentEncoding(email, "!*'()"));
        QCOMPARE(Snippets::downloadSummary(bytes, email), expected);
    }

    void bundle()
    {
        const QSettings info(qEnvironmentVariable("QV_BINARY_DIR") +
                                 QStringLiteral("/bin/Info.ini"),
                             QSettings::IniFormat);
        const QString version = info.value(QStringLiteral("CFBundleShortVersionString")).toString();
        QVERIFY(!version.isEmpty());
        QCOMPARE(Snippets::applicationVersion(), version);
    }

    void localized_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << QStringLiteral("en");
        QTest::newRow("German") << QStringLiteral("de-DE");
        QTest::newRow("Japanese") << QStringLiteral("ja");
    }
    void localized()
    {
        QFETCH(QString, language);
        Quorvelle::Bundle::setPreferredLanguagesForTesting(QStringList{language});
        const QString unit = QStringLiteral("%llu bytes");
        QCOMPARE(Snippets::localizedText(unit),
                 translationInSource(QStringLiteral("strings"), language.left(2), unit));
        QCOMPARE(Snippets::localizedText(QStringLiteral("No such text")),
                 QStringLiteral("No such text"));
        Quorvelle::Bundle::setPreferredLanguagesForTesting(QStringList{u"en"_s});
    }

    void cryptor()
    {
        const PKey key(EVP_RSA_gen(1024), EVP_PKEY_free);
        QVERIFY(key);
        std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new(BIO_s_mem()), BIO_free);
        QVERIFY(PEM_write_bio_PUBKEY(bio.get(), key.get()) == 1);
        char *pem = nullptr;
        const long pemLength = BIO_get_mem_data(bio.get(), &pem);
        const QString publicKey = QString::fromLatin1(pem, pemLength);

        // More than two blocks of plain data (117 bytes each with this key and padding).
        QByteArray secret(300, '\0');
        QVERIFY(RAND_bytes(reinterpret_cast<unsigned char *>(secret.data()), 300) == 1);
        const std::optional<QString> sealed = Snippets::sealForService(publicKey, secret);
        QVERIFY(sealed);
        QVERIFY(!sealed->contains(u'\n'));
        const QByteArray blocks = QByteArray::fromBase64(sealed->toLatin1());
        QCOMPARE(blocks.size(), 3 * 128);
        QCOMPARE(decryptBlocks(key.get(), blocks), secret);

        QCOMPARE(Snippets::sealForService(QStringLiteral("no key at all"), secret), std::nullopt);
    }

    void itemTree()
    {
        PropertyValue::Array items = Snippets::removalList();
        QCOMPARE(Snippets::removalSummary(items), QStringLiteral("1 of 3 items, 500 bytes"));
        const auto name = [](const PropertyValue &item) {
            return item.value(QStringLiteral("name")).value_or(PropertyValue()).toString();
        };
        QCOMPARE(name(items.at(0)), QStringLiteral("Caches"));
        QCOMPARE(name(items.at(1)), QStringLiteral("Preferences.plist"));
        const PropertyValue::Array caches =
            items.at(0).value(QStringLiteral("items")).value_or(PropertyValue()).toArray();
        QCOMPARE(caches.size(), 2);
        QCOMPARE(name(caches.at(0)), QStringLiteral("a.cache"));
        for (const PropertyValue &file : caches)
            QCOMPARE(file.value(QStringLiteral("checked")).value_or(PropertyValue()).toInt64(), 0);
    }

    void aboutThisComputer_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<Files>("files");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("described")
            << QByteArray("vm\n    product: ThinkPad X1\n  *-memory\n       size: 16GiB\n")
            << Files{{u"/etc/os-release"_s, "NAME=Testix\nPRETTY_NAME=\"Testix 12 (alpha)\"\n"},
                     {u"/proc/sys/kernel/osrelease"_s, "6.1.0-13-amd64\n"}}
            << QStringList{u"Model: ThinkPad X1"_s, u"Memory: 16GiB"_s,
                           u"System: Testix 12 (alpha)"_s, u"Kernel: 6.1.0"_s, u"Disk: unknown"_s};
        QTest::newRow("tells nothing")
            << QByteArray() << Files{}
            << QStringList{u"Model: Mac"_s, u"Memory: N/A"_s, u"System: unknown"_s,
                           u"Kernel: unknown"_s, u"Disk: unknown"_s};
    }
    void aboutThisComputer()
    {
        QFETCH(QByteArray, report);
        QFETCH(Files, files);
        QFETCH(QStringList, expected);
        FakeMachine machine(files);
        machine.reportTool(report);
        QStringList lines = Snippets::aboutThisComputer();
        QCOMPARE(lines.size(), expected.size() + 1);
        // The desktop's application database is the real machine's here: only its form counts.
        const QString applications = lines.takeLast();
        QVERIFY2(applications.startsWith(QStringLiteral("Applications: ")),
                 qPrintable(applications));
        bool number = false;
        applications.mid(14).toUInt(&number);
        QVERIFY2(number, qPrintable(applications));
        QCOMPARE(lines, expected);
    }

    // The Widgets guide. A flat cell decoded from a description brings the kit's blue, which
    // fills the face (away from the rounded corners and the title).
    void flatButton()
    {
        QWidget window;
        Quorvelle::Button *button = Snippets::flatButton(&window);
        button->resize(button->sizeHint());
        QCOMPARE(button->cell()->title(), u"Uninstall"_s); // the mnemonic marker is no title
        const QImage face = button->grab().toImage();
        QCOMPARE(face.pixelColor(3, face.height() / 2), QColor(23, 120, 211));
        QVERIFY(Snippets::borderedButton(&window)->cellClass() == u"VXFlatBorderedButtonCell"_s);
    }

    void checkBoxAndRadioMatrix()
    {
        QWidget window;
        Quorvelle::Button *box = Snippets::checkBox(&window);
        QVERIFY(box->isCheckable());
        QVERIFY(box->isChecked());
        VXMatrix *matrix = Snippets::radioMatrix(&window);
        QCOMPARE(matrix->numberOfRows(), 3);
        QCOMPARE(matrix->rowOfCell(matrix->selectedCell()), 1);
        for (int row = 0; row < 3; ++row) {
            const auto *cell =
                dynamic_cast<const VXFlatRadioButtonCell *>(matrix->cellAtRow(row, 0)->cell());
            QVERIFY(cell);
            QCOMPARE(cell->selectionStyle(), 1u);
        }
        // The rows are exclusive: choosing another one leaves only that one on.
        matrix->cellAtRow(2, 0)->click();
        QCOMPARE(matrix->rowOfCell(matrix->selectedCell()), 2);
        QCOMPARE(matrix->cellAtRow(1, 0)->state(), int(Quorvelle::ButtonCell::OffState));
    }

    // The window description compiled by uic: the cells come from cellClass, and the
    // matrix gives its style to rows it gets after the style was set.
    void windowDescription()
    {
        QWidget form;
        Ui::ChoiceForm ui;
        ui.setupUi(&form);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const auto *remove = dynamic_cast<const VXFlatButtonCell *>(ui.removeButton->cell());
        QVERIFY(remove);
        QCOMPARE(remove->regularColor(), QuorvelleColor::quorvelleBlueColor());
        const auto *quick = dynamic_cast<const VXFlatRadioButtonCell *>(ui.quickChoice->cell());
        QVERIFY(quick);
        QCOMPARE(quick->selectionStyle(), 2u);
        QCOMPARE(ui.choices->numberOfRows(), 2);
    }

    void templatedText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"Backup Pro"_s;
        QTest::newRow("markup characters stay text") << u"Tom & Jerry <2>"_s;
    }
    void templatedText()
    {
        QFETCH(QString, name);
        const VXAttributedString notice = Snippets::removalNotice(name);
        QCOMPARE(notice.string(),
                 name + u" will be removed from this computer. Your files are not touched."_s);
        QVERIFY(notice.attributeAtIndex(VXFontAttributeName, 0).value<VXFont>().isBold());
        const auto not_ = std::uint64_t(notice.string().lastIndexOf(u" not "_s) + 1);
        QCOMPARE(notice.attributeAtIndex(VXForegroundColorAttributeName, not_).value<VXColor>(),
                 QuorvelleColor::quorvelleRedColor());
        // The label wraps: narrower is taller.
        QWidget window;
        QWidget *label = Snippets::attributedLabel(notice, &window);
        QVERIFY(label->heightForWidth(150) > label->heightForWidth(3000));
    }

    void gradientAndRows()
    {
        QWidget window;
        VXGradientView *header = Snippets::gradientHeader(&window);
        header->resize(200, 48);
        const QImage band = header->grab().toImage();
        QCOMPARE(band.pixelColor(100, 0), QColor(Qt::white)); // angle 270: start on top
        QVERIFY(band.pixelColor(100, 40).lightness() < 250);
        QLabel label(u"Label"_s);
        Snippets::styleLabel(&label);
        QCOMPARE(label.font().pointSizeF(), QuorvelleFont::quorvelleHeaderFontSize());
        QTableView *table = Snippets::alternatingTable(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(table->palette().color(QPalette::AlternateBase),
                 VXColorConvertion::newCGColor(QuorvelleColor::tableAlternateRowBackgroundColor()));
    }
};

QTEST_MAIN(tst_DocSnippets)
#include "tst_docsnippets.moc"
