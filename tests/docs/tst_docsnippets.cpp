// The guides' examples do what the guides say, checked against independent oracles:
// QJsonDocument for the JSON text, QUrl for the escaping, libcrypto for the sealed data,
// the Qt Linguist sources for the translations, a fake machine for the system information,
// the palette's documented values and pixels of what the widgets draw.
#include "FakeMachine.h"
#include "Snippets.h"
#include "WidgetsSnippets.h"
#include "tsfile.h"
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
#include <QRegularExpression>
#include <QSettings>
#include <QTableView>
#include <QUrl>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>

#include <memory>

namespace {
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
        const QString none = u"not a JSON object"_s;
        QTest::newRow("settings")
            << u"{\"name\": \"Backup\", \"retries\": 3, \"paths\": [\"/a\", \"/b\"]}"_s
            << u"Backup: 3 retries, 2 paths"_s;
        QTest::newRow("members missing") << u"{}"_s << u": 0 retries, 0 paths"_s;
        QTest::newRow("an array") << u"[1]"_s << none;
    }
    void readJson()
    {
        QFETCH(QString, text);
        QTEST(Snippets::describeSettings(text), "expected");
    }

    // Members in insertion order, no whitespace, the text as Qt's reader reads it.
    void writeJson_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("contact");
        QTest::newRow("quotes, line break, tab") << u"He said \"no\"\n\tthen left\\"_s << false;
        QTest::newRow("non-ASCII") << u"zu teuer, 高すぎる 😀"_s << true;
    }
    void writeJson()
    {
        QFETCH(QString, reason);
        QFETCH(bool, contact);
        const QString payload = Snippets::answersPayload(reason, contact);
        QCOMPARE(QJsonDocument::fromJson(payload.toUtf8()).object(),
                 (QJsonObject{{u"reason"_s, reason},
                              {u"contact"_s, contact ? 1 : 0},
                              {u"choices"_s, QJsonArray{1, 3}},
                              {u"version"_s, 2}}));
        QVERIFY2(payload.startsWith(u"{\"reason\":"_s) && payload.endsWith(u",\"version\":2}"_s),
                 qPrintable(payload));
    }

    void strings_data()
    {
        QTest::addColumn<quint64>("bytes");
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("size");
        QTest::newRow("megabytes")
            << quint64(4200000) << u"ann.lee+tag@example.org"_s << u"4.2 MB"_s;
        QTest::newRow("bytes, blanks and non-ASCII")
            << quint64(512) << u"zoë (home)@example.de"_s << u"512 bytes"_s;
        QTest::newRow("not an address") << quint64(1) << u"ann.lee"_s << QString();
    }
    void strings()
    {
        QFETCH(quint64, bytes);
        QFETCH(QString, email);
        QFETCH(QString, size);
        QCOMPARE(Snippets::downloadSummary(bytes, email),
                 size.isNull() ? u"no valid address"_s
                               : size + u" to "_s +
                                     QString::fromLatin1(QUrl::toPercentEncoding(email, "!*'()")));
    }

    // The version from the build's Info.ini, the texts from the Qt Linguist sources.
    void bundle_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << u"en"_s;
        QTest::newRow("German") << u"de-DE"_s;
    }
    void bundle()
    {
        QFETCH(QString, language);
        Quorvelle::Bundle::setPreferredLanguagesForTesting(QStringList{language});
        const QSettings info(qEnvironmentVariable("QV_BINARY_DIR") + u"/bin/Info.ini"_s,
                             QSettings::IniFormat);
        const QString version = info.value(u"CFBundleShortVersionString"_s).toString();
        QVERIFY(!version.isEmpty());
        QCOMPARE(Snippets::applicationVersion(), version);
        const QString unit = u"%llu bytes"_s;
        QCOMPARE(Snippets::localizedText(unit),
                 TsFile::translation(qEnvironmentVariable("QV_SOURCE_DIR") +
                                         u"/resources/translations/strings_"_s + language.left(2) +
                                         u".ts"_s,
                                     unit));
        QCOMPARE(Snippets::localizedText(u"No such text"_s), u"No such text"_s);
        Quorvelle::Bundle::setPreferredLanguagesForTesting(QStringList{u"en"_s});
    }

    // More than two blocks of plain data (117 bytes each with this key and padding), opened
    // by libcrypto; no key, no sealed data.
    void cryptor()
    {
        const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_RSA_gen(1024),
                                                                      EVP_PKEY_free);
        std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new(BIO_s_mem()), BIO_free);
        QVERIFY(key && PEM_write_bio_PUBKEY(bio.get(), key.get()) == 1);
        char *pem = nullptr;
        const long pemLength = BIO_get_mem_data(bio.get(), &pem);
        QByteArray secret(300, '\0');
        QVERIFY(RAND_bytes(reinterpret_cast<unsigned char *>(secret.data()), 300) == 1);
        const std::optional<QString> sealed =
            Snippets::sealForService(QString::fromLatin1(pem, pemLength), secret);
        QVERIFY(sealed && !sealed->contains(u'\n'));
        const QByteArray blocks = QByteArray::fromBase64(sealed->toLatin1());
        QCOMPARE(blocks.size(), 3 * 128);
        QCOMPARE(decryptBlocks(key.get(), blocks), secret);
        QCOMPARE(Snippets::sealForService(u"no key at all"_s, secret), std::nullopt);
    }

    void itemTree()
    {
        PropertyValue::Array items = Snippets::removalList();
        QCOMPARE(Snippets::removalSummary(items), u"1 of 3 items, 500 bytes"_s);
        const auto field = [](const PropertyValue &item, const char *name) {
            return item.value(QString::fromLatin1(name)).value_or(PropertyValue());
        };
        const PropertyValue::Array caches = field(items.at(0), "items").toArray();
        QCOMPARE(caches.size(), 2);
        for (const PropertyValue &file : caches)
            QCOMPARE(field(file, "checked").toInt64(), 0);
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
        // The desktop's application database is the real machine's here: only its form counts.
        const QString applications = lines.takeLast();
        QVERIFY2(applications.contains(QRegularExpression(u"^Applications: \\d+$"_s)),
                 qPrintable(applications));
        QCOMPARE(lines, expected);
    }

    // The Widgets guide. A flat cell brings the kit's blue, which fills the face (away from
    // the rounded corners and the title); the radio rows are exclusive.
    void buttons()
    {
        QWidget window;
        Quorvelle::Button *button = Snippets::flatButton(&window);
        button->resize(button->sizeHint());
        QCOMPARE(button->cell()->title(), u"Uninstall"_s); // the mnemonic marker is no title
        const QImage face = button->grab().toImage();
        QCOMPARE(face.pixelColor(3, face.height() / 2), QColor(23, 120, 211));
        Quorvelle::Button *box = Snippets::checkBox(&window);
        QVERIFY(box->isCheckable() && box->isChecked());

        VXMatrix *matrix = Snippets::radioMatrix(&window);
        QCOMPARE(matrix->numberOfRows(), 3);
        QCOMPARE(matrix->rowOfCell(matrix->selectedCell()), 1);
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
        QVERIFY(remove && remove->regularColor() == QuorvelleColor::quorvelleBlueColor());
        const auto *quick = dynamic_cast<const VXFlatRadioButtonCell *>(ui.quickChoice->cell());
        QVERIFY(quick && quick->selectionStyle() == 2u);
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
