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

namespace {

// Markers for information files that are not plain content.
const QByteArray kNoPath = "<no path>";
const QByteArray kMissing = "<missing file>";
const QByteArray kFolder = "<a folder>";

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

class TestPayload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void payload_data();
    void payload();
    void numberKindsStayApart();

private:
    QTemporaryDir _dir;
};

void TestPayload::payload_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<quint64>("reason");
    QTest::addColumn<bool>("flags");
    QTest::addColumn<QString>("comment");
    QTest::addColumn<QByteArray>("expected"); // without "version"

    const QByteArray allSet = "all flags set";
    const QByteArray noneSet = "no flag set";
    for (quint64 reason = 0; reason <= 5; ++reason) {
        for (const bool flags : {true, false}) {
            QJsonObject expected = parse(kSurveyOnly);
            if (flags) {
                expected.insert(QStringLiteral("comment"), QStringLiteral("why"));
                expected.insert(QStringLiteral("easeofUse"), 1);
            }
            QJsonObject nested;
            switch (reason) {
            case 1:
                expected.insert(QStringLiteral("other"), 1);
                break;
            case 2:
                expected.insert(QStringLiteral("fairPrice"), 1);
                if (flags)
                    nested = parse(R"({"priceNotDisclosedBeforeInstall":1,"priceTooHigh":1})");
                expected.insert(QStringLiteral("priceIssues"), nested);
                break;
            case 3:
                expected.insert(QStringLiteral("marketingIssues"), 1);
                break;
            case 4:
                expected.insert(QStringLiteral("featureSatisfaction"), 1);
                if (flags)
                    nested = parse(R"({"featuresUnused":1,"easeofUse":1,"computerSlowedDown":1})");
                expected.insert(QStringLiteral("featureIssues"), nested);
                break;
            case 5:
                expected.insert(QStringLiteral("supportQuality"), 1);
                if (flags)
                    nested = parse(R"({"slowResponse":1,"unprofessionalSupport":1})");
                expected.insert(QStringLiteral("supportIssues"), nested);
                break;
            }
            QTest::addRow("reason %d, %s", int(reason), (flags ? allSet : noneSet).constData())
                << kNoPath << reason << flags << (flags ? QStringLiteral("why") : QString())
                << QJsonDocument(expected).toJson(QJsonDocument::Compact);
        }
    }

    const QByteArray full =
        R"({"userName":"ann","comment":"old","version":"0.1","priceIssues":{"x":1},"extra":[1,"two"]})";
    QTest::newRow("file keys kept, survey keys replaced")
        << full << quint64(1) << false << QStringLiteral("new")
        << QByteArray(R"({"userName":"ann","comment":"new","priceIssues":{"x":1},"extra":[1,"two"],
            "other":1,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})");
    QTest::newRow("file's priceIssues replaced for the price reason")
        << full << quint64(2) << false << QString()
        << QByteArray(R"({"userName":"ann","comment":"","priceIssues":{},"extra":[1,"two"],
            "other":0,"fairPrice":1,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})");
    QTest::newRow("non-string user name passed on")
        << QByteArray(R"({"userName":{"id":7,"names":["a"]}})") << quint64(3) << false << QString()
        << QByteArray(R"({"userName":{"id":7,"names":["a"]},"marketingIssues":1,"comment":"",
            "other":0,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":0})");
    QTest::newRow("user name named like a survey key survives")
        << QByteArray(R"({"userName":"x","other":"file"})") << quint64(5) << false << QString()
        << QByteArray(R"({"userName":"x","supportIssues":{},"comment":"",
            "other":0,"fairPrice":0,"featureSatisfaction":0,"easeofUse":0,"supportQuality":1})");
    const QList<QPair<const char *, QByteArray>> surveyOnly = {
        {"an array", "[1,2,3]"},         {"text that is no JSON", "no json at all"},
        {"an empty file", QByteArray()}, {"invalid UTF-8", "{\"userName\":\"\xff\xfe\"}"},
        {"a missing file", kMissing},    {"a folder", kFolder},
    };
    for (const auto &[label, info] : surveyOnly) {
        QTest::addRow("only survey keys from %s", label)
            << info << quint64(0) << false << QString() << kSurveyOnly;
    }
}

void TestPayload::payload()
{
    QFETCH(QByteArray, info);
    QFETCH(quint64, reason);
    QFETCH(bool, flags);
    QFETCH(QString, comment);
    QFETCH(QByteArray, expected);

    VXUninstallSurveyController controller;
    QString path;
    if (info == kMissing) {
        path = _dir.filePath(QStringLiteral("does-not-exist.json"));
    } else if (info == kFolder) {
        path = _dir.path();
    } else if (info != kNoPath) {
        path = _dir.filePath(QStringLiteral("info.json"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(info);
    }
    if (!path.isNull())
        QVERIFY(controller.applicationOpenFile(path));

    controller.setUninstallingReason(reason);
    const bool readable =
        !path.isNull() && info != kMissing && info != kFolder && !info.contains('\xff');
    QCOMPARE(controller.uninstallInfo(), readable ? QString::fromUtf8(info) : QStringLiteral("{}"));
    // Flags and comment after the reason: choosing a reason clears them.
    controller.setComment(comment);
    controller.setNotDisclosedPrice(flags);
    controller.setPriceTooHigh(flags);
    controller.setUselessSoftware(flags);
    controller.setTooComplexToUse(flags);
    controller.setSlowedDownComputer(flags);
    controller.setSlowSupportResponse(flags);
    controller.setUnprofessionalSupport(flags);

    const QString version =
        VXThreadSafety::threadSafeMainBundle()
            ->objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
            .value_or(PropertyValue())
            .toString();
    QVERIFY(!version.isEmpty());
    QCOMPARE(controller.version(), version);
    QJsonObject want = parse(expected);
    want.insert(QStringLiteral("version"), version);

    const QJsonObject wire = parse(JSON::JSONString(controller.uninstallData()).toUtf8());
    QCOMPARE(wire, want);
}

// Integer and boolean numbers look alike on the wire, so the kinds are checked here.
void TestPayload::numberKindsStayApart()
{
    VXUninstallSurveyController controller;
    controller.setUninstallingReason(4);
    controller.setTooComplexToUse(true);
    const PropertyValue data(controller.uninstallData());
    QCOMPARE(data.value(QStringLiteral("featureSatisfaction"))->type(),
             PropertyValue::Type::Integer);
    QCOMPARE(data.value(QStringLiteral("other"))->type(), PropertyValue::Type::Integer);
    QCOMPARE(data.value(QStringLiteral("easeofUse"))->type(), PropertyValue::Type::Bool);
    const PropertyValue featureIssues = *data.value(QStringLiteral("featureIssues"));
    QCOMPARE(featureIssues.value(QStringLiteral("easeofUse"))->type(), PropertyValue::Type::Bool);

    controller.setUninstallingReason(3);
    QCOMPARE(
        PropertyValue(controller.uninstallData()).value(QStringLiteral("marketingIssues"))->type(),
        PropertyValue::Type::Bool);
}

QTEST_GUILESS_MAIN(TestPayload)
#include "tst_payload.moc"
