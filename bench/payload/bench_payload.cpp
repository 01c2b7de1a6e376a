// An information file at the size bound (64 MiB, one long value among the usual keys), read
// by the uninstaller (`uninstallInfo`: the text; `uninstallData`: read, parsed and the
// answers laid over it) against Qt reading the same file (`QFile::readAll` and
// `QString::fromUtf8`; `QJsonDocument::fromJson` for the parse). The file lives in a
// scratch folder made for the run (by default on /dev/shm). Prints times and ratios; never
// fails on speed.
#include "VXUninstallSurveyController.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <unistd.h>
#include <vector>

namespace {

// The keys the suite writes, then one value that fills the file to exactly `size` bytes:
// lines of text with escapes and a few non-ASCII characters.
QByteArray informationFile(qint64 size)
{
    QByteArray head = R"({"userName":"Margit Lehtonen","productName":"Quorvelle",)"
                      R"("productVersion":"2.0.1","buildNumber":20140817,"licenseType":"trial",)"
                      R"("installPath":"\/opt\/quorvelle","log":")";
    const QByteArray tail = "\"}\n";
    const QByteArray line = "2014-09-01 18:40:02 scan of \\/home\\/margit\\/Bibliothèque "
                            "finished: 1834 files, 41.75 s, état \\\"ok\\\"\\n";
    QByteArray out;
    out.reserve(size);
    out += head;
    while (out.size() + line.size() + tail.size() <= size)
        out += line;
    out += QByteArray(size - out.size() - tail.size(), 'x');
    out += tail;
    return out;
}

struct Times
{
    std::vector<double> ours, qt;
};

double seconds(const std::function<bool()> &run)
{
    QElapsedTimer timer;
    timer.start();
    const bool ok = run();
    const double elapsed = double(timer.nsecsElapsed()) * 1e-9;
    return ok ? elapsed : -1;
}

double best(const std::vector<double> &v)
{
    return *std::min_element(v.begin(), v.end());
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray base = argc > 1 ? QByteArray(argv[1]) : QByteArrayLiteral("/dev/shm");
    QByteArray pattern = base + "/quorvelle-bench-payload-XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        std::printf("cannot make a scratch folder in %s: %s\n", base.constData(),
                    std::strerror(errno));
        return 1;
    }
    const QString path = QFile::decodeName(pattern + "/info.json");
    const qint64 size = VXUninstallSurveyController::kUninstallInfoMaxSize;
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(informationFile(size)) != size) {
            std::printf("cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    std::printf("information file of %lld bytes (the bound), scratch %s; rounds alternate\n", size,
                pattern.constData());

    VXUninstallSurveyController controller;
    controller.applicationOpenFile(path);
    const auto qtRead = [&path] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    };
    Times text, payload;
    const int rounds = 7;
    for (int round = 0; round < rounds; ++round) {
        text.ours.push_back(seconds([&] { return controller.uninstallInfo().size() > 2; }));
        text.qt.push_back(seconds([&] { return qtRead().size() > 2; }));
        payload.ours.push_back(seconds([&] { return controller.uninstallData().size() > 8; }));
        payload.qt.push_back(seconds([&] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) &&
                   QJsonDocument::fromJson(file.readAll()).object().size() > 2;
        }));
    }
    QFile::remove(path);
    ::rmdir(pattern.constData());
    for (const auto *times : {&text.ours, &text.qt, &payload.ours, &payload.qt}) {
        if (best(*times) < 0) {
            std::printf("a contender did not read the file\n");
            return 1;
        }
    }

    std::printf("%-44s %10s %10s\n", "", "best ms", "median ms");
    const auto row = [](const char *name, const std::vector<double> &v) {
        std::printf("%-44s %10.1f %10.1f\n", name, best(v) * 1e3, median(v) * 1e3);
    };
    row("uninstallInfo (the text)", text.ours);
    row("QFile::readAll + QString::fromUtf8", text.qt);
    row("uninstallData (read, parse, payload)", payload.ours);
    row("QFile::readAll + QJsonDocument::fromJson", payload.qt);
    std::printf("time ours / Qt: text best %.2f, median %.2f; payload best %.2f, median %.2f "
                "(lower is better)\n",
                best(text.ours) / best(text.qt), median(text.ours) / median(text.qt),
                best(payload.ours) / best(payload.qt), median(payload.ours) / median(payload.qt));
    return 0;
}
