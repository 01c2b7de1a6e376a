// The survey payload as the server will read it: built from information files and
// answers, written as JSON and parsed back with an independent reader.
#include "VXUninstallSurveyController.h"

#include "JSON.h"
#include "VXThreadSafeBundle.h"
#include "VXThreadSafeBundleProxy.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

// Markers for information files that are not plain content.
const QByteArray kNoPath = "<no path>";
const QByteArray kMissing = "<missing file>";

const char *const kFlags[] = {"notDisclosedPrice",    "priceTooHigh",       "uselessSoftware",
                              "tooComplexToUse",      "slowedDownComputer", "slowSupportResponse",
                              "unprofessionalSupport"};

const QByteArray kSurveyOnly =
    R"({"comment":"","other":0,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})";

QJsonObject parse(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        qWarning("unparsable JSON: %s (%s)", text.constData(), qPrintable(error.errorString()));
    return document.object();
}

} // namespace

// information file (or a marker), reason, every flag set, comment; the payload without
// "version"
using PayloadRow = std::tuple<QByteArray, quint64, bool, QString, QByteArray>;
Q_DECLARE_METATYPE(PayloadRow)

class TestPayload : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;

private Q_SLOTS:
    void payload_data()
    {
        QTest::addColumn<PayloadRow>("row");

        // Flags and comment are set after the reason; the survey keys always go out.
        const auto survey = [](const QByteArray &extra) {
            QJsonObject o = parse(kSurveyOnly);
            const QJsonObject e = parse(extra);
            for (auto it = e.begin(); it != e.end(); ++it)
                o.insert(it.key(), it.value());
            return QJsonDocument(o).toJson(QJsonDocument::Compact);
        };
        QTest::newRow("price, flags") << PayloadRow{
            kNoPath, 2, true, QString(), survey(R"({"fairPrice":1,"easeofUse":1,"comment":"",
                "priceIssues":{"priceNotDisclosedBeforeInstall":1,"priceTooHigh":1}})")};
        QTest::newRow("marketing") << PayloadRow{kNoPath, 3, true, QString(),
                                                 survey(R"({"marketingIssues":1,"easeofUse":1})")};
        QTest::newRow("features, flags") << PayloadRow{
            kNoPath, 4, true, QString(), survey(R"({"featureSatisfaction":1,"easeofUse":1,
                "featureIssues":{"featuresUnused":1,"easeofUse":1,"computerSlowedDown":1}})")};
        QTest::newRow("support, flags")
            << PayloadRow{kNoPath, 5, true, QString(), survey(R"({"supportQuality":1,"easeofUse":1,
                "supportIssues":{"slowResponse":1,"unprofessionalSupport":1}})")};

        const QByteArray full =
            R"({"userName":"ann","comment":"old","version":"0.1","priceIssues":{"x":1},"extra":[1,"two"]})";
        QTest::newRow("file keys kept, survey keys replaced") << PayloadRow{
            full, 1, false, u"new"_s,
            QByteArray(
                R"({"userName":"ann","comment":"new","priceIssues":{"x":1},"extra":[1,"two"],
                "other":1,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})")};
        QTest::newRow("file's priceIssues replaced for the price reason") << PayloadRow{
            full, 2, false, QString(),
            QByteArray(R"({"userName":"ann","comment":"","priceIssues":{},"extra":[1,"two"],
                "other":0,"fairPrice":1,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})")};
        QTest::newRow("user name named like a survey key survives")
            << PayloadRow{QByteArray(R"({"userName":"x","other":"file"})"), 5, false, QString(),
                          QByteArray(R"({"userName":"x","supportIssues":{},"comment":"",
                "other":0,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":1})")};
        const QList<QPair<const char *, QByteArray>> surveyOnly = {
            {"an array", "[1,2,3]"},
            {"text that is no JSON", "no json at all"},
            {"invalid UTF-8", "{\"userName\":\"\xff\xfe\"}"},
            {"a missing file", kMissing},
        };
        for (const auto &[label, info] : surveyOnly) {
            QTest::addRow("only survey keys from %s", label)
                << PayloadRow{info, 0, false, QString(), kSurveyOnly};
        }
    }

    void payload()
    {
        QFETCH(PayloadRow, row);
        const auto [info, reason, flags, comment, expected] = row;

        VXUninstallSurveyController controller;
        QString path;
        if (info == kMissing) {
            path = _dir.filePath(u"does-not-exist.json"_s);
        } else if (info != kNoPath) {
            path = _dir.filePath(u"info.json"_s);
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(info);
        }
        if (!path.isNull())
            QVERIFY(controller.applicationOpenFile(path));

        controller.setUninstallingReason(reason);
        const bool readable = !path.isNull() && info != kMissing && !info.contains('\xff');
        QCOMPARE(controller.uninstallInfo(), readable ? QString::fromUtf8(info) : u"{}"_s);
        // Flags and comment after the reason: choosing a reason clears them.
        controller.setComment(comment);
        for (const char *flag : kFlags)
            QVERIFY(controller.setProperty(flag, flags));

        const QString version = VXThreadSafety::threadSafeMainBundle()
                                    ->objectForInfoDictionaryKey(u"CFBundleShortVersionString"_s)
                                    .value_or(PropertyValue())
                                    .toString();
        QVERIFY(!version.isEmpty());
        QJsonObject want = parse(expected);
        want.insert(u"version"_s, version);

        const QJsonObject wire = parse(JSON::JSONString(controller.uninstallData()).toUtf8());
        QCOMPARE(wire, want);
    }

    void informationFileBounds_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("expected"); // what uninstallInfo() gives, as UTF-8

        const auto file = [this](const char *name, const QByteArray &content) {
            const QString path = _dir.filePath(QLatin1String(name));
            QFile f(path);
            if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
                f.write(content);
            return path;
        };
        // No real information file comes near 64 MiB: that much is read whole, one byte more
        // than the bound is refused.
        const qint64 large = 64 * 1024 * 1024;
        const QByteArray atLimit = "{\"a\":\"" + QByteArray(large - 8, 'x') + "\"}";
        QTest::newRow("64 MiB, the bound") << file("limit.json", atLimit) << atLimit;
        const QByteArray over(VXUninstallSurveyController::kUninstallInfoMaxSize + 1, ' ');
        QTest::newRow("one byte more than the bound")
            << file("over.json", over) << QByteArray("{}");
        const QString link = _dir.filePath(u"link.json"_s);
        QFile::link(file("small.json", "{\"b\":1}"), link);
        QTest::newRow("link to a file") << link << QByteArray("{\"b\":1}");
        // The kernel reports no size for it: the text is read to its end all the same, as Qt
        // reads it.
        QFile procFile(u"/proc/version"_s);
        if (procFile.open(QIODevice::ReadOnly))
            QTest::newRow("file whose size shows as 0")
                << procFile.fileName() << procFile.readAll();
        // Its first page is never mapped: the read fails.
        QTest::newRow("file that fails to read") << u"/proc/self/mem"_s << QByteArray("{}");
        QTest::newRow("folder") << _dir.path() << QByteArray("{}");
        QTest::newRow("endless device") << u"/dev/zero"_s << QByteArray("{}");
        const QString fifo = _dir.filePath(u"info.fifo"_s);
        ::mkfifo(QFile::encodeName(fifo).constData(), 0600);
        // No writer ever comes: a blocking open would hang here until the test's time-out.
        QTest::newRow("FIFO without a writer") << fifo << QByteArray("{}");
    }

    void informationFileBounds()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, expected);
        VXUninstallSurveyController controller;
        controller.applicationOpenFile(path);
        const auto openFiles = [] { return QDir(u"/proc/self/fd"_s).count(); };
        const uint before = openFiles();
        QCOMPARE(controller.uninstallInfo().toUtf8(), expected);
        QCOMPARE(openFiles(), before); // nothing is left open
    }
};

QTEST_GUILESS_MAIN(TestPayload)
#include "tst_payload.moc"
