// Consent and the privileged run through a real polkit: the test starts its own system
// bus and polkitd in a private pid and mount namespace (tmpfs over /run/dbus, the rules
// and the actions folders, so the host's daemons and files are untouched), with a rules
// file that grants or refuses our action, and runs itself inside as an unprivileged user.
#include "platform/VXPrivilegedRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <unistd.h>

namespace {

const char kInside[] = "--inside-polkit";

// As the unprivileged user: ask for consent, then have the superuser write its user id
// into a folder only the superuser may write to.
int runInside(const QString &outDir)
{
    const bool consented = VXPrivilegedRun::obtainConsent();
    std::printf("CONSENT %d\n", consented ? 1 : 0);
    std::fflush(stdout);
    if (!consented)
        return 0;
    const QString target = outDir + QStringLiteral("/root-only/uid");
    if (!VXPrivilegedRun::runDetached(QStringLiteral("id -u > '%1'").arg(target)))
        return 3;
    QElapsedTimer timer;
    timer.start();
    while (!QFileInfo::exists(target) && timer.elapsed() < 15000)
        QThread::msleep(20);
    QThread::msleep(100); // let the shell finish writing
    return 0;
}

} // namespace

class TestPrivilegedRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void consent_data();
    void consent();
};

void TestPrivilegedRun::consent_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("runs");
    QTest::newRow("granted") << QStringLiteral("YES") << true;
    QTest::newRow("refused") << QStringLiteral("NO") << false;
}

void TestPrivilegedRun::consent()
{
    QFETCH(QString, result);
    QFETCH(bool, runs);
    if (::geteuid() != 0)
        QSKIP("starting a private polkitd needs root");
    for (const char *tool :
         {"unshare", "setpriv", "dbus-daemon", "dbus-send", "pkcheck", "pkexec"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
            QSKIP("polkit tools missing");
    }
    const QString polkitd = QStringLiteral("/usr/lib/polkit-1/polkitd");
    const QString bin = QCoreApplication::applicationDirPath();
    const QString policy = bin + QStringLiteral("/../app/generated/net.brelltan.Quorvelle.policy");
    if (!QFileInfo::exists(polkitd) || !QFileInfo::exists(policy) ||
        !QFileInfo(QStringLiteral("/run/dbus")).isDir())
        QSKIP("polkitd, the built policy or /run/dbus missing");
    // The build's helper stands in for the installed one, so the policy must name it.
    const QString helper = VXPrivilegedRun::helperPath();
    QVERIFY(QFileInfo(helper).isExecutable());

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                          QFileDevice::ExeOther);
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("root-only")));
    QFile rules(dir.filePath(QStringLiteral("test.rules")));
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write(QStringLiteral("polkit.addRule(function(action, subject) {\n"
                               "    if (action.id == \"%1\") return polkit.Result.%2;\n"
                               "});\n")
                    .arg(QString::fromUtf16(VXPrivilegedRun::kActionId), result)
                    .toUtf8());
    rules.close();

    const QString script =
        QStringLiteral(R"(set -e
mount -t tmpfs none /run/dbus
mount -t tmpfs none /etc/polkit-1/rules.d
cp '%1/test.rules' /etc/polkit-1/rules.d/50-quorvelle-test.rules
mount -t tmpfs none /usr/share/polkit-1/actions
sed 's|<annotate key="org.freedesktop.policykit.exec.path">.*</annotate>|<annotate key="org.freedesktop.policykit.exec.path">%2</annotate>|' '%3' > /usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy
dbus-daemon --system --fork
%4 --no-debug &
for i in $(seq 100); do
  dbus-send --system --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner string:org.freedesktop.PolicyKit1 2>/dev/null | grep -q 'boolean true' && break
  sleep 0.05
done
setpriv --reuid 65534 --regid 65534 --clear-groups env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin '%5' %6 '%1'
)")
            .arg(dir.path(), helper, policy, polkitd, QCoreApplication::applicationFilePath(),
                 QLatin1String(kInside));

    QProcess unshare;
    unshare.start(QStringLiteral("unshare"),
                  {QStringLiteral("--pid"), QStringLiteral("--fork"), QStringLiteral("--mount"),
                   QStringLiteral("--mount-proc"), QStringLiteral("--propagation"),
                   QStringLiteral("private"), QStringLiteral("sh"), QStringLiteral("-c"), script});
    QVERIFY(unshare.waitForFinished(60000));
    const QByteArray out = unshare.readAllStandardOutput();
    const QByteArray err = unshare.readAllStandardError();
    QVERIFY2(unshare.exitCode() == 0, err.constData());
    QVERIFY2(out.contains(runs ? "CONSENT 1" : "CONSENT 0"), out.constData());

    QFile written(dir.filePath(QStringLiteral("root-only/uid")));
    QVERIFY2(written.exists() == runs, err.constData());
    if (runs) {
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll().trimmed(), QByteArray("0"));
    }
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], kInside) == 0)
        return runInside(QString::fromLocal8Bit(argv[2]));
    TestPrivilegedRun test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_privilegedrun.moc"
