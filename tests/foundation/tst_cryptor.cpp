#include "LogCapture.h"
#include "Tools.h"
#include "VXCryptor.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const int PKCS1 = 1, SSLv23 = 3, None = 4;

QByteArray pattern(qsizetype size, int seed = 0)
{
    QByteArray data(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        data[i] = char((i * 31 + seed * 7 + 1) & 0xff);
    return data;
}

// Raw RSA needs every block to stay below the modulus; a leading zero byte per block does.
QByteArray belowModulus(qsizetype blocks)
{
    QByteArray data = pattern(blocks * 128, 3);
    for (qsizetype b = 0; b < blocks; ++b)
        data[b * 128] = 0;
    return data;
}

} // namespace

// padding, the public key encrypts (else the private one), the private key in the traditional
// form, the plain data, the cipher's size
using TripRow = std::tuple<int, bool, bool, QByteArray, int>;
Q_DECLARE_METATYPE(TripRow)

class TestCryptor : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_private;            // PKCS #8 "PRIVATE KEY"
    QString m_privateTraditional; // "RSA PRIVATE KEY"
    QString m_public;             // subject public key info "PUBLIC KEY"
    QString m_publicPkcs1;        // "RSA PUBLIC KEY"

    // Runs "openssl <command>" in the scratch folder and returns the file written by -out.
    QString openssl(const char *command)
    {
        const QStringList arguments = QString::fromLatin1(command).split(u' ');
        const Tools::Outcome ran = Tools::run(u"openssl"_s, arguments, 120000, {}, m_dir.path());
        const QByteArray written =
            Tools::readFile(m_dir.filePath(arguments.value(arguments.indexOf(u"-out"_s) + 1)));
        if (ran.exitCode != 0 || written.isEmpty())
            qFatal("openssl %s failed: %s", command, ran.errors.constData());
        return QString::fromLatin1(written);
    }

    std::unique_ptr<VXCryptor> make(const QString &pem, int padding)
    {
        auto cryptor = VXCryptor::initWithRSAKeyFromString(pem, padding);
        if (!cryptor)
            qFatal("no cryptor for padding %d", padding);
        return cryptor;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_private = openssl("genrsa -out private.pem 1024");
        m_privateTraditional = openssl("rsa -in private.pem -traditional -out traditional.pem");
        m_public = openssl("rsa -in private.pem -pubout -out public.pem");
        m_publicPkcs1 = openssl("rsa -in private.pem -RSAPublicKey_out -out pkcs1.pem");
    }

    void roundTrip_data()
    {
        QTest::addColumn<TripRow>("row");
        const QByteArray text = pattern(300);
        QTest::newRow("pkcs1 public->private") << TripRow{1, true, false, text, 3 * 128};
        QTest::newRow("pkcs1 traditional key") << TripRow{1, false, true, text, 3 * 128};
        QTest::newRow("oaep public->private") << TripRow{2, true, false, text, 4 * 128};
        QTest::newRow("none private->public") << TripRow{4, false, false, belowModulus(3), 384};
        QTest::newRow("116 bytes fill one block") << TripRow{1, true, false, pattern(116), 128};
        QTest::newRow("117 bytes need two") << TripRow{1, true, false, pattern(117), 256};
    }
    void roundTrip()
    {
        QFETCH(TripRow, row);
        const auto [padding, publicEncrypts, traditional, plain, cipherSize] = row;
        const QString &privateKey = traditional ? m_privateTraditional : m_private;
        const auto encryptor = make(publicEncrypts ? m_public : privateKey, padding);
        const auto decryptor = make(publicEncrypts ? privateKey : m_public, padding);

        const std::optional<QByteArray> cipher = encryptor->encryptData(plain);
        QVERIFY(cipher);
        QCOMPARE(int(cipher->size()), cipherSize);
        if (plain.size() > 8)
            QVERIFY(!cipher->contains(plain));
        QCOMPARE(decryptor->decryptData(*cipher), plain);

        const std::optional<QString> base64 = encryptor->encryptBase64(plain);
        QVERIFY(base64);
        QCOMPARE(decryptor->decryptBase64(*base64), plain);
        QCOMPARE(decryptor->decryptBase64(PropertyValue(*base64)), plain);
    }

    void decryptIgnoresPartialBlock()
    {
        const auto publicKey = make(m_public, PKCS1);
        const auto privateKey = make(m_private, PKCS1);
        const QByteArray plain = pattern(200);
        QByteArray cipher = publicKey->encryptData(plain).value();
        QCOMPARE(cipher.size(), 256);
        cipher += pattern(44, 9);
        LogCapture log;
        QCOMPARE(privateKey->decryptData(cipher), plain);
        QCOMPARE(privateKey->decryptData(cipher.left(127)), QByteArray());
        QVERIFY(log.lines().isEmpty());
    }

    // A failing block gives no result and one log line naming the library's reason. Raw RSA
    // wants whole blocks; private-key OAEP encryption does not exist; SSLv23 decryption
    // refuses its own marker and works only with the private key.
    void failingBlock_data()
    {
        QTest::addColumn<int>("padding"); // with the private key
        QTest::addColumn<bool>("encrypt");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("reason");
        const QByteArray sslv23Cipher = make(m_public, SSLv23)->encryptData(pattern(100)).value();
        QTest::newRow("none, short block") << None << true << pattern(100) << QString();
        QTest::newRow("oaep private encrypt") << 2 << true << pattern(10) << QString();
        QTest::newRow("sslv23 marker")
            << SSLv23 << false << sslv23Cipher << u"sslv3 rollback attack"_s;
        QTest::newRow("sslv23 private encrypt")
            << SSLv23 << true << pattern(100) << u"unknown padding type"_s;
    }
    void failingBlock()
    {
        QFETCH(int, padding);
        QFETCH(bool, encrypt);
        QFETCH(QByteArray, input);
        QFETCH(QString, reason);
        const auto cryptor = make(m_private, padding);
        LogCapture log;
        QVERIFY(!(encrypt ? cryptor->encryptData(input) : cryptor->decryptData(input)));
        const QStringList lines = log.lines();
        QVERIFY2(lines.size() == 1 && lines.first().startsWith(u"Encrypt error: error:"_s) &&
                     lines.first().contains(reason),
                 qPrintable(lines.join(u'\n')));
    }

    // A key block of the wrong kind is refused.
    void unreadableKey() { QVERIFY(!VXCryptor::initWithRSAKeyFromString(m_publicPkcs1, PKCS1)); }

    // SSLv23 is PKCS #1 type 2 padding whose last eight padding bytes are 0x03.
    void sslv23Padding()
    {
        const QByteArray plain = pattern(100);
        const QByteArray cipher = make(m_public, SSLv23)->encryptData(plain).value();
        QCOMPARE(make(m_private, PKCS1)->decryptData(cipher), plain);
        const QByteArray block = make(m_private, None)->decryptData(cipher).value();
        QCOMPARE(block.left(2), QByteArray::fromHex("0002"));
        QCOMPARE(block.mid(128 - 100 - 9), QByteArray(8, '\3') + '\0' + plain);
        QVERIFY(!block.mid(2, 128 - 100 - 11).contains('\0'));
        // The random padding never holds a zero byte, which would end it early.
        for (int n = 0; n < 20; ++n) {
            const QByteArray shortCipher = make(m_public, SSLv23)->encryptData(pattern(10)).value();
            QCOMPARE(make(m_private, None)->decryptData(shortCipher)->indexOf('\0', 1), 128 - 11);
        }
        // A plain PKCS #1 cipher decrypts with SSLv23 too.
        const QByteArray pkcs1Cipher = make(m_public, PKCS1)->encryptData(plain).value();
        QCOMPARE(make(m_private, SSLv23)->decryptData(pkcs1Cipher), plain);
    }

    // Text longer than one read of the encoder and decoder, also with a line feed every few
    // characters.
    void base64LongText()
    {
        const QByteArray data = pattern(4099, 5);
        const QString text = VXCryptor::base64FromData(data).value();
        QCOMPARE(text, QString::fromLatin1(data.toBase64()));
        QString wrapped;
        for (qsizetype i = 0; i < text.size(); i += 3)
            wrapped += text.mid(i, 3) + u'\n';
        QCOMPARE(VXCryptor::dataFromBase64(wrapped), data);
    }

    // No text, no bytes, and text that is not base64 give nothing.
    void base64Edges()
    {
        QVERIFY(!VXCryptor::base64FromData(QByteArray()));
        QVERIFY(!VXCryptor::dataFromBase64(QString()));
        QCOMPARE(VXCryptor::dataFromBase64(u"%%%%"_s), QByteArray());
        // Carriage returns stay in the decoder's input, where one inside the text ends it.
        QCOMPARE(VXCryptor::dataFromBase64(u"AA\r\nEC\r\n"_s), QByteArray());
        const auto cryptor = make(m_private, PKCS1);
        QVERIFY(!cryptor->decryptBase64(PropertyValue(qint64(42))));
        QCOMPARE(cryptor->encryptData(QByteArray()), QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestCryptor)
#include "tst_cryptor.moc"
