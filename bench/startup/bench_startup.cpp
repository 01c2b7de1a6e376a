// Launch until the window is mapped, for the uninstaller (account service reachable) and
// for a bare Qt window, each started the same way through scripts/qv-sandbox under Xvfb;
// the ratio of the medians is the figure (target <= 1.2). Then the time the uninstaller
// takes to decide "offline" and end when the resolver swallows every query (target <= 2 s).
// Prints figures only; never fails on speed.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace {

QString sandbox()
{
    return QStringLiteral(QV_SOURCE_DIR "/scripts/qv-sandbox");
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

struct Display
{
    QProcess xvfb;
    QProcess spy; // reports every window mapped on the display
    QString name;
    QByteArray events;

    bool start()
    {
        for (int n = 150; n < 200 && name.isEmpty(); ++n) {
            if (QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)) ||
                QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)))
                continue;
            xvfb.start(QStringLiteral("Xvfb"),
                       {QStringLiteral(":%1").arg(n), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("1024x768x24"),
                        QStringLiteral("-nolisten"), QStringLiteral("tcp")});
            xvfb.waitForStarted();
            for (int i = 0; i < 100 && !QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n));
                 ++i)
                QThread::msleep(50);
            if (QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n))) {
                name = QStringLiteral(":%1").arg(n);
            } else {
                xvfb.kill();
                xvfb.waitForFinished();
            }
        }
        if (name.isEmpty())
            return false;
        qputenv("DISPLAY", name.toLatin1());
        qunsetenv("QT_QPA_PLATFORM");
        spy.start(QStringLiteral("stdbuf"),
                  {QStringLiteral("-oL"), QStringLiteral("xev"), QStringLiteral("-root"),
                   QStringLiteral("-event"), QStringLiteral("substructure")});
        QThread::msleep(300);
        return spy.waitForStarted();
    }
    ~Display()
    {
        spy.kill();
        spy.waitForFinished();
        xvfb.terminate();
        xvfb.waitForFinished();
    }
    void drain()
    {
        while (spy.waitForReadyRead(50))
            spy.readAllStandardOutput();
        events.clear();
    }
    bool waitForMap(int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < timeoutMs) {
            if (spy.waitForReadyRead(5))
                events += spy.readAllStandardOutput();
            if (events.contains("MapNotify"))
                return true;
        }
        return false;
    }
};

// Milliseconds from launch to the first mapped window, or -1.
double timeToWindow(Display &display, const QString &stage, const QString &program)
{
    display.drain();
    QProcess run;
    run.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    run.start(sandbox(), {QStringLiteral("run"), stage, QCoreApplication::applicationDirPath(),
                          QStringLiteral("--no-service"), QStringLiteral("--program"), program});
    const double ms = display.waitForMap(20000) ? double(timer.nsecsElapsed()) / 1e6 : -1;
    run.kill();
    run.waitForFinished();
    QThread::msleep(100);
    return ms;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 15;

    QTemporaryDir stage;
    QProcess prepare;
    prepare.start(sandbox(), {QStringLiteral("prepare"), stage.path(),
                              QCoreApplication::applicationDirPath()});
    if (!prepare.waitForFinished(60000) || prepare.exitCode() != 0) {
        std::fprintf(stderr, "bench_startup: could not prepare the sandbox\n");
        return 1;
    }
    Display display;
    if (!display.start()) {
        std::fprintf(stderr, "bench_startup: could not start Xvfb\n");
        return 1;
    }

    // Alternating, after one warm-up each, so both see the same cache state.
    timeToWindow(display, stage.path(), QStringLiteral("quorvelle-uninstaller"));
    timeToWindow(display, stage.path(), QStringLiteral("bench_startup_bare"));
    QList<double> survey, bare;
    for (int i = 0; i < rounds; ++i) {
        survey.append(timeToWindow(display, stage.path(), QStringLiteral("quorvelle-uninstaller")));
        bare.append(timeToWindow(display, stage.path(), QStringLiteral("bench_startup_bare")));
    }
    if (survey.contains(-1) || bare.contains(-1)) {
        std::fprintf(stderr, "bench_startup: a window never appeared\n");
        return 1;
    }
    const double s = median(survey), b = median(bare);
    std::printf("launch -> window shown, median of %d, in the sandbox under Xvfb:\n", rounds);
    std::printf("  survey window  %7.1f ms\n  bare Qt window %7.1f ms\n  ratio          %7.2f x "
                "(target <= 1.20)\n",
                s, b, s / b);

    // Offline decision: the account host is not in the hosts file and the resolver swallows
    // the queries. The sandbox reports the program's own run time.
    QList<double> offline;
    static const QRegularExpression ran(QStringLiteral("program ran (\\d+) ms"));
    for (int i = 0; i < 5; ++i) {
        QProcess run;
        run.start(sandbox(), {QStringLiteral("run"), stage.path(),
                              QCoreApplication::applicationDirPath(), QStringLiteral("--offline"),
                              QStringLiteral("--resolver-blackhole"), QStringLiteral("--time")});
        run.waitForFinished(60000);
        const auto match = ran.match(QString::fromUtf8(run.readAllStandardError()));
        if (!match.hasMatch()) {
            std::fprintf(stderr, "bench_startup: offline run gave no time\n");
            return 1;
        }
        offline.append(match.captured(1).toDouble());
    }
    std::printf("offline decision with a black-holed resolver (launch -> removal -> end), "
                "median of 5:\n  %7.1f ms (target <= 2000; worst %.1f ms)\n",
                median(offline), *std::max_element(offline.begin(), offline.end()));
    return 0;
}
