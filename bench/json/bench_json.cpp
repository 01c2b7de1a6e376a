// Read and write throughput of the JSON reader and writer against QJsonDocument on the
// same generated inputs. Prints figures and ratios; never fails on speed.
//
// Our reader takes a QString (UTF-16), QJsonDocument takes UTF-8 bytes: reading is shown
// both from the QString as is and including QString::fromUtf8 of the bytes. Likewise
// writing is shown to a QString and including toUtf8, against QJsonDocument::toJson.
#include "JSON.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QString>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

QString quoted(const QString &s)
{
    return u'"' + s + u'"';
}

// An uninstall-information file as the suite writes it, about 1 KB.
QString informationFile()
{
    return QStringLiteral(
        "{\n  \"userName\": \"Margit Lehtonen\",\n  \"userEmail\": "
        "\"margit.lehtonen@example.org\",\n"
        "  \"productName\": \"Quorvelle\",\n  \"productVersion\": \"2.0.1\",\n"
        "  \"buildNumber\": 20140817,\n  \"installDate\": \"2014-08-17T09:12:44Z\",\n"
        "  \"installPath\": \"\\/Applications\\/Quorvelle.app\",\n  \"licenseType\": \"trial\",\n"
        "  \"licenseKey\": \"QV-8F2K-11ZC-7RTA-0P3M\",\n  \"trialDaysLeft\": 12,\n"
        "  \"machineID\": \"3F2504E0-4F89-11D3-9A0C-0305E82C3301\",\n"
        "  \"osVersion\": \"10.9.4\",\n  \"language\": \"de\",\n"
        "  \"components\": [\"scanner\", \"cleaner\", \"updater\", \"helper\", \"menu bar "
        "agent\"],\n"
        "  \"usage\": {\"launches\": 57, \"scans\": 31, \"freedBytes\": 1834023321, \"lastScan\": "
        "\"2014-09-01T18:40:02Z\", \"averageScanSeconds\": 41.75},\n"
        "  \"settings\": {\"startAtLogin\": true, \"showInMenuBar\": false, \"skin\": null,\n"
        "    \"excludedFolders\": [\"\\/Users\\/margit\\/Music\", \"\\/Users\\/margit\\/Photos "
        "Library\"]},\n  \"comment\": \"Installed from the web site; upgraded twice.\\n\"\n}\n");
}

QString randomWord(QRandomGenerator &random)
{
    static const char16_t *const words[] = {
        u"alpha",          u"Übersicht",      u"cache",     u"Library",
        u"plist",          u"naïve",          u"log",       u"Application Support",
        u"préférences",    u"\\\"quoted\\\"", u"tab\\tbed", u"line\\nbreak",
        u"\\/usr\\/local", u"日本語",         u"σ",         u"x"};
    return QString::fromUtf16(words[random.bounded(int(std::size(words)))]);
}

QString stringHeavy(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{\"items\":[");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        out += QStringLiteral("{\"id\":\"item-%1\",\"title\":").arg(n);
        QString title;
        for (int k = random.bounded(2, 6); k > 0; --k)
            title += randomWord(random) + u' ';
        out += quoted(title) + QStringLiteral(",\"path\":\"\\/Users\\/someone\\/Library\\/");
        for (int k = random.bounded(1, 4); k > 0; --k)
            out += randomWord(random) + QStringLiteral("\\/");
        out += QStringLiteral("file\",\"note\":");
        QString note;
        for (int k = random.bounded(4, 40); k > 0; --k)
            note += randomWord(random) + u' ';
        out += quoted(note) + u'}';
    }
    return out + QStringLiteral("]}");
}

QString numberHeavy(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{\"series\":[");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        out += u'[';
        for (int k = 0; k < 16; ++k) {
            if (k)
                out += u',';
            if (k % 3 == 0)
                out += QString::number(qint64(random.generate()) - 0x7fffffff);
            else if (k % 3 == 1)
                out += QString::number(random.generateDouble() * 1000.0, 'g', 17);
            else
                out += QString::number((random.generateDouble() - 0.5) * 1e-5, 'e', 6);
        }
        out += u']';
    }
    return out + QStringLiteral("]}");
}

// Chunks of objects and arrays nested 400 deep (within both parsers' nesting limits).
QString deeplyNested(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{\"chunks\":[");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        const int depth = 400;
        for (int d = 0; d < depth; ++d)
            out += (d % 2) ? QStringLiteral("[") : QStringLiteral("{\"k%1\":").arg(d % 7);
        out += QString::number(random.bounded(1000));
        for (int d = depth - 1; d >= 0; --d)
            out += (d % 2) ? QStringLiteral("]") : QStringLiteral("}");
    }
    return out + QStringLiteral("]}");
}

// Best time of one run of each, in seconds. The contenders take turns, so that load from
// other processes on a shared machine falls on both alike; at least 5 rounds and 1 s.
std::vector<double> bestTimes(const std::vector<std::function<void()>> &runs)
{
    std::vector<double> best(runs.size(), 1e9);
    QElapsedTimer total;
    total.start();
    for (int round = 0; round < 5 || (total.elapsed() < 1000 && round < 5000); ++round) {
        for (size_t k = 0; k < runs.size(); ++k) {
            QElapsedTimer timer;
            timer.start();
            runs[k]();
            best[k] = std::min(best[k], double(timer.nsecsElapsed()) * 1e-9);
        }
    }
    return best;
}

volatile qsizetype sink;

} // namespace

int main(int argc, char **argv)
{
    // An optional argument picks the inputs whose name contains it.
    const QString only = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    // Each input is made only when it is measured, each from its own seed.
    const struct
    {
        const char *name;
        std::function<QString(QRandomGenerator &)> make;
    } inputs[] = {
        {"information 1 KB", [](QRandomGenerator &) { return informationFile(); }},
        {"strings 1 MB", [](QRandomGenerator &r) { return stringHeavy(1 << 20, r); }},
        {"numbers 1 MB", [](QRandomGenerator &r) { return numberHeavy(1 << 20, r); }},
        {"nested 1 MB", [](QRandomGenerator &r) { return deeplyNested(1 << 20, r); }},
        {"strings 10 MB", [](QRandomGenerator &r) { return stringHeavy(10 << 20, r); }},
        {"numbers 10 MB", [](QRandomGenerator &r) { return numberHeavy(10 << 20, r); }},
        {"nested 10 MB", [](QRandomGenerator &r) { return deeplyNested(10 << 20, r); }},
    };

    std::printf(
        "Throughput in MB/s of UTF-8 text; ratio = ours / QJsonDocument (higher is "
        "better).\nread: ours from QString | ours incl. fromUtf8 | QJsonDocument::fromJson"
        "\nwrite: ours to QString | ours incl. toUtf8 | QJsonDocument::toJson(Compact)\n\n");
    std::printf("%-17s %8s | %8s %8s %8s %6s %6s | %8s %8s %8s %6s %6s\n", "input", "KB", "rd ours",
                "rd+conv", "rd Qt", "ratio", "r+conv", "wr ours", "wr+conv", "wr Qt", "ratio",
                "w+conv");

    for (const auto &input : inputs) {
        if (!only.isEmpty() && !QString::fromUtf8(input.name).contains(only))
            continue;
        QRandomGenerator random(42);
        const QString text = input.make(random);
        const QByteArray utf8 = text.toUtf8();
        const double megabytes = double(utf8.size()) / (1 << 20);

        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(utf8, &error);
        const auto tree = JSON::dictionaryWithJSONString(text);
        if (error.error != QJsonParseError::NoError || !tree) {
            std::printf("%s: input not read (%s)\n", input.name, qPrintable(error.errorString()));
            return 1;
        }

        const auto read = bestTimes({
            [&] { sink = JSON::dictionaryWithJSONString(text)->size(); },
            [&] { sink = JSON::dictionaryWithJSONString(QString::fromUtf8(utf8))->size(); },
            [&] { sink = QJsonDocument::fromJson(utf8).object().size(); },
        });
        const auto write = bestTimes({
            [&] { sink = JSON::JSONString(*tree).size(); },
            [&] { sink = JSON::JSONString(*tree).toUtf8().size(); },
            [&] { sink = document.toJson(QJsonDocument::Compact).size(); },
        });
        const double readOurs = read[0], readOursConv = read[1], readQt = read[2];
        const double writeOurs = write[0], writeOursConv = write[1], writeQt = write[2];

        // What we write must read back to the same tree.
        if (JSON::dictionaryWithJSONString(JSON::JSONString(*tree)) != tree) {
            std::printf("%s: written text does not read back\n", input.name);
            return 1;
        }

        std::printf("%-17s %8.0f | %8.1f %8.1f %8.1f %6.2f %6.2f | %8.1f %8.1f %8.1f %6.2f %6.2f\n",
                    input.name, double(utf8.size()) / 1024, megabytes / readOurs,
                    megabytes / readOursConv, megabytes / readQt, readQt / readOurs,
                    readQt / readOursConv, megabytes / writeOurs, megabytes / writeOursConv,
                    megabytes / writeQt, writeQt / writeOurs, writeQt / writeOursConv);
        std::fflush(stdout);
    }
    return 0;
}
