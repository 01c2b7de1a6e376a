// Read and write throughput, parse-plus-free time and tree memory of the JSON reader and
// writer against QJsonDocument, nlohmann::json and RapidJSON (DOM) on the same generated
// inputs. Prints figures and ratios; never fails on speed.
//
// Every contender starts from the same UTF-8 bytes and ends with UTF-8 bytes: our reader is
// measured from the bytes (its UTF-8 entry) and, for reference, from a QString made
// beforehand; our writer is measured to UTF-8 bytes and, for reference, to a QString.
//
// Then writing by document size, 1 KB to 100 MB, each writer in a fresh process (the
// program runs itself with --write-one), so that no measurement inherits the allocator's
// state from another. Usage: bench_json [input name part | --sizes | --profile WHAT INPUT N]
#include "JSON.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QString>

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <malloc.h>
#include <memory>
#include <optional>
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

// A timeline of posts as a social network's interface returns it: nested user objects,
// entity arrays, long numeric identifiers, booleans, nulls and non-ASCII text.
QString socialMedia(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{\"statuses\":[");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        QString text;
        for (int k = random.bounded(6, 24); k > 0; --k)
            text += randomWord(random) + u' ';
        const quint64 id = 505874924095815680ull + quint64(random.bounded(1 << 30));
        out += QStringLiteral("{\"metadata\":{\"result_type\":\"recent\",\"iso_language_code\":"
                              "\"ja\"},\"created_at\":\"Sun Aug 31 00:29:15 +0000 2014\",\"id\":%1,"
                              "\"id_str\":\"%1\",\"text\":")
                   .arg(id);
        out += quoted(text);
        out += QStringLiteral(",\"source\":\"<a href=\\\"https:\\/\\/example.org\\/app\\\" "
                              "rel=\\\"nofollow\\\">client %1<\\/a>\",\"truncated\":false,"
                              "\"in_reply_to_status_id\":null,\"in_reply_to_user_id\":%2,"
                              "\"user\":{\"id\":%3,\"name\":")
                   .arg(random.bounded(50))
                   .arg(random.bounded(2) ? QString::number(random.bounded(1 << 30))
                                          : QStringLiteral("null"))
                   .arg(random.bounded(1 << 30));
        out += quoted(randomWord(random) + u' ' + randomWord(random));
        out +=
            QStringLiteral(",\"screen_name\":\"user%1\",\"location\":\"\",\"description\":").arg(n);
        QString description;
        for (int k = random.bounded(0, 16); k > 0; --k)
            description += randomWord(random) + u' ';
        out += quoted(description);
        out += QStringLiteral(",\"protected\":false,\"followers_count\":%1,\"friends_count\":%2,"
                              "\"verified\":%3,\"lang\":\"ja\",\"profile_background_color\":"
                              "\"C0DEED\",\"default_profile\":true},\"geo\":null,"
                              "\"retweet_count\":%4,\"favorite_count\":%5,\"entities\":{"
                              "\"hashtags\":[],\"symbols\":[],\"urls\":[],"
                              "\"user_mentions\":[{\"screen_name\":\"user%6\",\"id\":%7,"
                              "\"indices\":[%8,%9]}]},\"favorited\":false,\"retweeted\":false,"
                              "\"lang\":\"ja\"}")
                   .arg(random.bounded(5000))
                   .arg(random.bounded(5000))
                   .arg(random.bounded(2) ? QStringLiteral("true") : QStringLiteral("false"))
                   .arg(random.bounded(100))
                   .arg(random.bounded(100))
                   .arg(random.bounded(1000))
                   .arg(random.bounded(1 << 30))
                   .arg(3)
                   .arg(random.bounded(10, 30));
    }
    return out + QStringLiteral("],\"search_metadata\":{\"count\":100}}");
}

// Strings, numbers and nested containers taking turns, in pieces of about 64 KB.
QString mixed(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{\"parts\":[");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        switch (n % 3) {
        case 0:
            out += stringHeavy(64 * 1024, random);
            break;
        case 1:
            out += numberHeavy(64 * 1024, random);
            break;
        default:
            out += deeplyNested(64 * 1024, random);
            break;
        }
    }
    return out + QStringLiteral("]}");
}

// One object with many short keys in random order and small values.
QString wideObject(qsizetype size, QRandomGenerator &random)
{
    QString out = QStringLiteral("{");
    for (int n = 0; out.size() < size; ++n) {
        if (n)
            out += u',';
        out += QStringLiteral("\"k%1\":%2").arg(random.generate()).arg(random.bounded(100));
    }
    return out + u'}';
}

// Best time of one run of each, in seconds. The contenders take turns, so that load from
// other processes on a shared machine falls on all alike; at least 3 rounds and 1 s.
// `after`, when given, runs untimed after each run (to free what the run kept).
std::vector<double> bestTimes(const std::vector<std::function<void()>> &runs,
                              const std::function<void()> &after = {})
{
    // One contender's rounds after another's, not interleaved: freeing one reader's tree
    // leaves the heap in a state that can slow or speed the next reader's allocations (a
    // RapidJSON read of the wide input ran 5x slower after nlohmann's tree was freed than
    // after its own).
    std::vector<double> best(runs.size(), 1e9);
    for (size_t k = 0; k < runs.size(); ++k) {
        QElapsedTimer total;
        total.start();
        for (int round = 0; round < 3 || (total.elapsed() < 300 && round < 2000); ++round) {
            QElapsedTimer timer;
            timer.start();
            runs[k]();
            best[k] = std::min(best[k], double(timer.nsecsElapsed()) * 1e-9);
            if (after)
                after();
        }
    }
    return best;
}

// Heap bytes in use, as the allocator counts them (chunk headers included).
size_t heapInUse()
{
    return mallinfo2().uordblks;
}

// Heap bytes held by what `make` returns, per byte of input.
template <typename Make> double treeBytesPerInputByte(Make make, qsizetype inputBytes)
{
    malloc_trim(0);
    const size_t before = heapInUse();
    auto tree = make();
    const size_t after = heapInUse();
    return double(after - before) / double(inputBytes);
}

volatile qsizetype sink;

rapidjson::Document rapidRead(const QByteArray &utf8)
{
    rapidjson::Document document;
    document.Parse(utf8.constData(), size_t(utf8.size()));
    return document;
}

// RapidJSON's default reading of numbers may be a few units in the last place off; ours
// rounds correctly, as this mode does.
rapidjson::Document rapidReadFullPrecision(const QByteArray &utf8)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag>(utf8.constData(), size_t(utf8.size()));
    return document;
}

QByteArray rapidWrite(const rapidjson::Document &document)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    document.Accept(writer);
    return QByteArray(buffer.GetString(), qsizetype(buffer.GetSize()));
}

// How many of the reals read by RapidJSON's default differ from the correctly rounded
// reading of the same document: counted over both trees side by side.
std::pair<qsizetype, qsizetype> differingReals(const rapidjson::Value &fast,
                                               const rapidjson::Value &exact)
{
    if (fast.IsDouble() && exact.IsDouble())
        return {fast.GetDouble() != exact.GetDouble() ? 1 : 0, 1};
    std::pair<qsizetype, qsizetype> sum{0, 0};
    const auto add = [&](const rapidjson::Value &a, const rapidjson::Value &b) {
        const auto [differing, reals] = differingReals(a, b);
        sum.first += differing;
        sum.second += reals;
    };
    if (fast.IsArray() && exact.IsArray() && fast.Size() == exact.Size()) {
        for (rapidjson::SizeType k = 0; k < fast.Size(); ++k)
            add(fast[k], exact[k]);
    } else if (fast.IsObject() && exact.IsObject() && fast.MemberCount() == exact.MemberCount()) {
        for (auto a = fast.MemberBegin(), b = exact.MemberBegin(); a != fast.MemberEnd(); ++a, ++b)
            add(a->value, b->value);
    }
    return sum;
}

// The inputs of the side-by-side table, each made from its own seed when it is measured.
struct Input
{
    const char *name;
    std::function<QString(QRandomGenerator &)> make;
};

const Input inputs[] = {
    {"information 1 KB", [](QRandomGenerator &) { return informationFile(); }},
    {"social 447 KB", [](QRandomGenerator &r) { return socialMedia(447 * 1024, r); }},
    {"strings 10 MB", [](QRandomGenerator &r) { return stringHeavy(10 << 20, r); }},
    {"numbers 10 MB", [](QRandomGenerator &r) { return numberHeavy(10 << 20, r); }},
    {"nested 10 MB", [](QRandomGenerator &r) { return deeplyNested(10 << 20, r); }},
    {"mixed 10 MB", [](QRandomGenerator &r) { return mixed(10 << 20, r); }},
    {"wide 10 MB", [](QRandomGenerator &r) { return wideObject(10 << 20, r); }},
};

// The writers measured per size, each in a process of its own.
const char *const writers[] = {"ours", "ours/QStr", "Qt", "nlohmann", "RapidJSON"};

// Child process: reads a social-media document of `size` bytes with one contender, then
// writes it a few times and prints the median time of one write in seconds. The process is
// fresh, so what the allocator did before is the same for every contender and every run.
int writeOne(qsizetype size, int writer)
{
    QRandomGenerator random(42);
    const QByteArray utf8 = socialMedia(size, random).toUtf8();
    std::function<qsizetype()> write;
    std::optional<PropertyValue::Dictionary> ours;
    QJsonDocument qt;
    nlohmann::json nl;
    rapidjson::Document rj;
    switch (writer) {
    case 0:
    case 1:
        ours = JSON::dictionaryWithJSONString(utf8);
        if (writer == 0)
            write = [&] { return JSON::JSONUtf8(*ours).size(); };
        else
            write = [&] { return JSON::JSONString(*ours).size(); };
        break;
    case 2:
        qt = QJsonDocument::fromJson(utf8);
        write = [&] { return qt.toJson(QJsonDocument::Compact).size(); };
        break;
    case 3:
        nl = nlohmann::json::parse(utf8.cbegin(), utf8.cend());
        write = [&] { return qsizetype(nl.dump().size()); };
        break;
    default:
        rj.Parse(utf8.constData(), size_t(utf8.size()));
        write = [&] { return rapidWrite(rj).size(); };
        break;
    }
    std::vector<double> times;
    QElapsedTimer total;
    total.start();
    while (times.size() < 5 || (total.elapsed() < 300 && times.size() < 1001)) {
        QElapsedTimer timer;
        timer.start();
        sink = write();
        times.push_back(double(timer.nsecsElapsed()) * 1e-9);
    }
    std::nth_element(times.begin(), times.begin() + qsizetype(times.size() / 2), times.end());
    std::printf("%.9f %lld\n", times[times.size() / 2], qlonglong(utf8.size()));
    return 0;
}

// Write speed by document size, 1 KB to 100 MB, each writer in a fresh process.
void writeSizes()
{
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    std::printf("== write by size: social-media documents, each writer in a fresh process, "
                "median of >= 5 writes, MB/s of UTF-8 output\n");
    std::printf("%-8s", "size");
    for (const char *name : writers)
        std::printf(" %9s", name);
    std::printf(" | %7s %7s %7s\n", "/Qt", "/nl", "/rj");
    for (const qsizetype size : {qsizetype(1) << 10, qsizetype(10) << 10, qsizetype(100) << 10,
                                 qsizetype(1) << 20, qsizetype(10) << 20, qsizetype(100) << 20}) {
        double seconds[std::size(writers)] = {};
        double megabytes = 0;
        for (size_t writer = 0; writer < std::size(writers); ++writer) {
            const QByteArray command = '\'' + QByteArray::fromStdString(self) + "' --write-one " +
                                       QByteArray::number(size) + ' ' +
                                       QByteArray::number(qulonglong(writer));
            FILE *child = popen(command.constData(), "r");
            long long bytes = 0;
            if (!child || std::fscanf(child, "%lf %lld", &seconds[writer], &bytes) != 2)
                seconds[writer] = 0;
            if (child)
                pclose(child);
            megabytes = double(bytes) / (1 << 20);
        }
        const auto speed = [&](int k) { return seconds[k] > 0 ? megabytes / seconds[k] : 0.0; };
        std::printf("%-8s", size >= (1 << 20)
                                ? qPrintable(QStringLiteral("%1 MB").arg(size >> 20))
                                : qPrintable(QStringLiteral("%1 KB").arg(size >> 10)));
        for (size_t writer = 0; writer < std::size(writers); ++writer)
            std::printf(" %9.1f", speed(int(writer)));
        std::printf(" | %7.2f %7.2f %7.2f\n", seconds[2] / seconds[0], seconds[3] / seconds[0],
                    seconds[4] / seconds[0]);
        std::fflush(stdout);
    }
}

// Only our reader or writer (or RapidJSON's, for scale), `repeat` times on one input, for a
// profiler (callgrind counts
// instructions the same from run to run, where wall time on a shared machine does not).
int profile(const QString &what, const QString &only, int repeat)
{
    for (const Input &input : inputs) {
        if (!QString::fromUtf8(input.name).contains(only))
            continue;
        QRandomGenerator random(42);
        const QByteArray utf8 = input.make(random).toUtf8();
        auto tree = JSON::dictionaryWithJSONString(utf8);
        qsizetype total = 0;
        for (int k = 0; k < repeat; ++k) {
            if (what == u"read") {
                auto next = JSON::dictionaryWithJSONString(utf8);
                total += next->size();
                tree = std::move(next); // the tree read before is freed here
            } else if (what == u"pf") {
                total += JSON::dictionaryWithJSONString(utf8)->size();
            } else if (what == u"rapidjson-pf") {
                total += qsizetype(rapidRead(utf8).MemberCount());
            } else if (what == u"rapidjson-full-pf") {
                total += qsizetype(rapidReadFullPrecision(utf8).MemberCount());
            } else if (what == u"rapidjson-write") {
                static const rapidjson::Document document = rapidRead(utf8);
                total += rapidWrite(document).size();
            } else if (what == u"write") {
                total += JSON::JSONUtf8(*tree).size();
            } else if (what == u"writeq") {
                total += JSON::JSONString(*tree).size();
            } else {
                return 2;
            }
        }
        sink = total;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QString first = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (first == u"--write-one" && argc == 4)
        return writeOne(QByteArray(argv[2]).toLongLong(), QByteArray(argv[3]).toInt());
    if (first == u"--profile" && argc == 5)
        return profile(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                       QByteArray(argv[4]).toInt());
    if (first == u"--sizes") {
        writeSizes();
        return 0;
    }
    // An optional argument picks the inputs whose name contains it; without one the table
    // by size follows.
    const QString only = first;

    std::printf("MB/s of UTF-8 text (higher is better); ratios are ours / peer in speed.\n"
                "read: ours from UTF-8 bytes | ours from a ready QString | QJsonDocument | "
                "nlohmann::json | RapidJSON DOM; the tree is built, not freed\n"
                "p+f: parse plus freeing the tree, MB/s\n"
                "write: tree to compact UTF-8 text; ours/QStr: our writer to a QString "
                "instead (MB/s of the same UTF-8 size)\n"
                "mem: heap held by the tree per input byte (our QString input, when kept, "
                "adds 2 per byte of ASCII)\n\n");

    for (const Input &input : inputs) {
        if (!only.isEmpty() && !QString::fromUtf8(input.name).contains(only))
            continue;
        QRandomGenerator random(42);
        const QString text = input.make(random);
        const QByteArray utf8 = text.toUtf8();
        const double megabytes = double(utf8.size()) / (1 << 20);

        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(utf8, &error);
        const auto tree = JSON::dictionaryWithJSONString(text);
        const nlohmann::json nl = nlohmann::json::parse(utf8.cbegin(), utf8.cend());
        const rapidjson::Document rj = rapidRead(utf8);
        if (error.error != QJsonParseError::NoError || !tree || rj.HasParseError()) {
            std::printf("%s: input not read (%s)\n", input.name, qPrintable(error.errorString()));
            return 1;
        }
        // What we write must read back to the same tree.
        if (JSON::dictionaryWithJSONString(JSON::JSONString(*tree)) != tree ||
            JSON::JSONUtf8(*tree) != JSON::JSONString(*tree).toUtf8()) {
            std::printf("%s: written text does not read back\n", input.name);
            return 1;
        }

        // Reading: the tree is kept until after the clock stops.
        std::unique_ptr<std::optional<PropertyValue::Dictionary>> ours;
        std::unique_ptr<QJsonDocument> qt;
        std::unique_ptr<nlohmann::json> nlTree;
        std::unique_ptr<rapidjson::Document> rjTree;
        const auto keep = [](auto &slot, auto &&value) {
            using T = std::remove_cvref_t<decltype(value)>;
            slot = std::make_unique<T>(std::move(value));
        };
        const auto freeTrees = [&] {
            ours.reset();
            qt.reset();
            nlTree.reset();
            rjTree.reset();
        };
        const auto read =
            bestTimes({
                          [&] { keep(ours, JSON::dictionaryWithJSONString(utf8)); },
                          [&] { keep(ours, JSON::dictionaryWithJSONString(text)); },
                          [&] { keep(qt, QJsonDocument::fromJson(utf8)); },
                          [&] { keep(nlTree, nlohmann::json::parse(utf8.cbegin(), utf8.cend())); },
                          [&] { keep(rjTree, rapidRead(utf8)); },
                          [&] { keep(rjTree, rapidReadFullPrecision(utf8)); },
                      },
                      freeTrees);
        const auto parseFree = bestTimes({
            [&] { sink = JSON::dictionaryWithJSONString(utf8)->size(); },
            [&] { sink = QJsonDocument::fromJson(utf8).object().size(); },
            [&] { sink = qsizetype(nlohmann::json::parse(utf8.cbegin(), utf8.cend()).size()); },
            [&] { sink = qsizetype(rapidRead(utf8).MemberCount()); },
        });
        const auto write = bestTimes({
            [&] { sink = JSON::JSONUtf8(*tree).size(); },
            [&] { sink = JSON::JSONString(*tree).size(); },
            [&] { sink = document.toJson(QJsonDocument::Compact).size(); },
            [&] { sink = qsizetype(nl.dump().size()); },
            [&] { sink = rapidWrite(rj).size(); },
        });
        const double memory[] = {
            treeBytesPerInputByte([&] { return JSON::dictionaryWithJSONString(utf8); },
                                  utf8.size()),
            treeBytesPerInputByte([&] { return QJsonDocument::fromJson(utf8); }, utf8.size()),
            treeBytesPerInputByte([&] { return nlohmann::json::parse(utf8.cbegin(), utf8.cend()); },
                                  utf8.size()),
            treeBytesPerInputByte(
                [&] { return std::make_unique<rapidjson::Document>(rapidRead(utf8)); },
                utf8.size()),
        };

        std::printf("== %s (%.0f KB)\n", input.name, double(utf8.size()) / 1024);
        std::printf("%-6s %9s %9s %9s %9s %9s | %7s %7s %7s\n", "", "ours", "ours/QStr", "Qt",
                    "nlohmann", "RapidJSON", "/Qt", "/nl", "/rj");
        std::printf("%-6s %9.1f %9.1f %9.1f %9.1f %9.1f | %7.2f %7.2f %7.2f\n", "read",
                    megabytes / read[0], megabytes / read[1], megabytes / read[2],
                    megabytes / read[3], megabytes / read[4], read[2] / read[0], read[3] / read[0],
                    read[4] / read[0]);
        std::printf("%-6s %9.1f %9s %9.1f %9.1f %9.1f | %7.2f %7.2f %7.2f\n", "p+f",
                    megabytes / parseFree[0], "", megabytes / parseFree[1],
                    megabytes / parseFree[2], megabytes / parseFree[3], parseFree[1] / parseFree[0],
                    parseFree[2] / parseFree[0], parseFree[3] / parseFree[0]);
        std::printf("%-6s %9.1f %9.1f %9.1f %9.1f %9.1f | %7.2f %7.2f %7.2f\n", "write",
                    megabytes / write[0], megabytes / write[1], megabytes / write[2],
                    megabytes / write[3], megabytes / write[4], write[2] / write[0],
                    write[3] / write[0], write[4] / write[0]);
        std::printf("%-6s %9.1f %9s %9.1f %9.1f %9.1f | %7.2f %7.2f %7.2f  (x input, lower is "
                    "better; ratios peer/ours)\n",
                    "mem", memory[0], "", memory[1], memory[2], memory[3], memory[1] / memory[0],
                    memory[2] / memory[0], memory[3] / memory[0]);
        const auto [differing, reals] = differingReals(rj, rapidReadFullPrecision(utf8));
        std::printf("%-6s %9.1f MB/s RapidJSON with full precision, ours / it %.2f; its default "
                    "reads %lld of %lld reals differently\n",
                    "read", megabytes / read[5], read[5] / read[0], qlonglong(differing),
                    qlonglong(reals));
        std::fflush(stdout);
    }
    if (only.isEmpty())
        writeSizes();
    return 0;
}
