// Consent and the privileged run through a real polkit: the test starts its own system
// bus and polkitd in a private pid and mount namespace (tmpfs over /run/dbus, the rules
// and the actions folders, so the host's daemons and files are untouched), with a rules
// file that grants or refuses our action, and runs the system-wide removal there as an
// unprivileged user.
#include "LogCapture.h"
#include "VXSuiteItems.h"
#include "VXUninstallSurveyController.h"
#include "platform/VXPrivilegedRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

#include <cstdio>
#include <unistd.h>

namespace {

const char kRemoveAsUser[] = "--remove-as-user";

// As the unprivileged user inside a chroot with its own /Library: the system-wide part of
// the removal, reporting its log lines.
int removeAsUser()
{
    LogCapture capture;
    VXUninstallSurveyController controller;
    controller.uninstallPriviledgedParts();
    for (const QString &line : capture.lines())
        std::printf("LOG %s\n", line.toUtf8().constData());
    return 0;
}

bool polkitAvailable()
{
    if (::geteuid() != 0)
        return false;
    for (const QString &tool :
         QStringLiteral("unshare setpriv chroot dbus-daemon dbus-send pkcheck pkexec").split(u' '))
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return false;
    return QFileInfo::exists(QStringLiteral("/usr/lib/polkit-1/polkitd")) &&
           QFileInfo(QStringLiteral("/run/dbus")).isDir() &&
           QFileInfo::exists(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/../app/generated/net.brelltan.Quorvelle.policy"));
}

} // namespace

class TestPrivilegedRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void promptMatchesTranslations();
    void composedCommands();
    void helperRefuses_data();
    void helperRefuses();
    void removalAsUser_data();
    void removalAsUser();

private:
    // Runs body (shell text) as root in a private pid+mount namespace where a system bus
    // and polkitd run, our action is known and the rules file answers it with result.
    // %1 in body is a scratch folder of the test. Returns standard output; false on failure.
    bool runWithPolkit(const QString &result, const QString &body, QByteArray *out);
    QTemporaryDir _dir;
};

bool TestPrivilegedRun::runWithPolkit(const QString &result, const QString &body, QByteArray *out)
{
    const QString polkitd = QStringLiteral("/usr/lib/polkit-1/polkitd");
    const QString policy = QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../app/generated/net.brelltan.Quorvelle.policy");
    // The build's helper stands in for the installed one, so the policy must name it.
    const QString helper = VXPrivilegedRun::helperPath();

    const QString dir = _dir.path();
    // A fresh folder per run, readable by the unprivileged user.
    QDir(dir).removeRecursively();
    QDir().mkpath(dir);
    QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                   QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                   QFileDevice::ExeOther);
    QFile rules(dir + QStringLiteral("/test.rules"));
    if (!rules.open(QIODevice::WriteOnly))
        return false;
    rules.write(QStringLiteral("polkit.addRule(function(action, subject) {\n"
                               "    if (action.id == \"%1\") return polkit.Result.%2;\n"
                               "});\n")
                    .arg(QString::fromUtf16(VXPrivilegedRun::kActionId), result)
                    .toUtf8());
    rules.close();

    const QString script = QStringLiteral(R"sh(set -e
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
)sh")
                               .arg(dir, helper, policy, polkitd) +
                           QString(body).replace(QStringLiteral("%1"), dir);

    QProcess unshare;
    unshare.start(
        QStringLiteral("unshare"),
        QStringLiteral("--pid --fork --mount --mount-proc --propagation private sh -c").split(u' ')
            << script);
    if (!unshare.waitForFinished(60000))
        return false;
    *out = unshare.readAllStandardOutput();
    const QByteArray err = unshare.readAllStandardError();
    if (unshare.exitCode() != 0 || qEnvironmentVariableIsSet("QV_DEBUG_POLKIT"))
        qWarning("polkit namespace: %s", err.constData());
    return unshare.exitCode() == 0;
}

// polkit shows the policy's message; it must say what the program's own strings say.
void TestPrivilegedRun::promptMatchesTranslations()
{
    const QString bin = QCoreApplication::applicationDirPath();
    QFile policy(bin + QStringLiteral("/../app/generated/net.brelltan.Quorvelle.policy"));
    QVERIFY(policy.open(QIODevice::ReadOnly));
    QMap<QString, QString> messages; // language ("" = default) -> text
    QXmlStreamReader xml(&policy);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement &&
            xml.name() == QStringLiteral("message")) {
            const QString lang = xml.attributes().value(QStringLiteral("xml:lang")).toString();
            messages.insert(lang, xml.readElementText());
        }
    }
    QVERIFY(!xml.hasError());
    const QString key = QStringLiteral("Please enter your password to uninstall Quorvelle.");
    QCOMPARE(messages.value(QString()), key);
    QTranslator german;
    QVERIFY(german.load(bin + QStringLiteral("/translations/removal_de.qm")));
    const QString translated = german.translate("Localizable", key.toUtf8().constData());
    QVERIFY(!translated.isEmpty());
    QCOMPARE(messages.value(QStringLiteral("de")), translated);
}

namespace {
// The command as the removal writes it, spelled out here independently of the composer.
QString expectedCommand(int mask)
{
    const QStringList paths = {
        QStringLiteral("/Library/Application Support/Quorvelle"),
        QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
        QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
        QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon"),
        QStringLiteral(
            "/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist")};
    QString command;
    for (int i = 0; i < paths.size(); ++i)
        if (mask & (1 << i))
            command += QStringLiteral("rm -rf '%1'; ").arg(paths.at(i));
    return command +
           QStringLiteral("launchctl remove com.varnix.Quorvelle.AntiVirus; launchctl remove "
                          "com.varnix.Quorvelle.plugin.AntiTheft.daemon; launchctl remove "
                          "net.brelltan.Quorvelle.plugin.AntiTheft.daemon");
}
} // namespace

// Every command the removal can compose is one the helper accepts, and nothing else is.
void TestPrivilegedRun::composedCommands()
{
    QVERIFY(VXSuiteItems::composeCommand([](std::string_view) { return false; }).empty());
    for (int mask = 1; mask < 256; ++mask) {
        int index = 0;
        const std::string composed = VXSuiteItems::composeCommand(
            [&](std::string_view) { return (mask & (1 << index++)) != 0; });
        QCOMPARE(QString::fromStdString(composed), expectedCommand(mask));
        QVERIFY(VXSuiteItems::isComposedCommand(composed));
    }
}

void TestPrivilegedRun::helperRefuses_data()
{
    QTest::addColumn<QString>("command");
    const QString one = expectedCommand(1);
    const QString piece = QStringLiteral("rm -rf '/Library/Application Support/Quorvelle'; ");
    const QString tail = expectedCommand(0);
    QTest::newRow("empty") << QString();
    QTest::newRow("tail alone") << tail;
    QTest::newRow("no tail") << piece;
    QTest::newRow("another command") << QStringLiteral("touch %1");
    QTest::newRow("appended command") << one + QStringLiteral("; touch %1");
    QTest::newRow("prepended command") << QStringLiteral("touch %1; ") + one;
    QTest::newRow("trailing line end") << one + u'\n';
    QTest::newRow("piece twice") << piece + one;
    QTest::newRow("pieces out of order")
        << QStringLiteral("rm -rf '/Library/Caches/com.varnix.Quorvelle'; ") + piece + tail;
    QTest::newRow("other path") << QStringLiteral("rm -rf '/'; ") + tail;
    QTest::newRow("quote breaking out")
        << QStringLiteral("rm -rf '/Library/Application Support/Quorvelle'; touch %1 '; ") + tail;
}

// Refused text: a message on standard error, a non-zero exit, and nothing run. Only
// refusals are tried here: an accepted command would remove the real machine's items.
void TestPrivilegedRun::helperRefuses()
{
    QFETCH(QString, command);
    const QString marker = _dir.filePath(QStringLiteral("ran"));
    QFile::remove(marker);
    command.replace(QStringLiteral("%1"), marker);
    QVERIFY(!VXSuiteItems::isComposedCommand(command.toStdString()));
    QProcess helper;
    helper.start(QCoreApplication::applicationDirPath() +
                     QStringLiteral("/quorvelle-privileged-helper"),
                 {command});
    QVERIFY(helper.waitForFinished(10000));
    QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
    QVERIFY(helper.exitCode() != 0);
    QVERIFY(helper.readAllStandardError().contains("refused"));
    QVERIFY(!QFile::exists(marker));
}

void TestPrivilegedRun::removalAsUser_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("logged");
    QTest::addColumn<QStringList>("after");

    const QStringList installed = {
        QStringLiteral("Library/Application Support/Quorvelle/data"),
        QStringLiteral("Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
        QStringLiteral("Library/LaunchDaemons/org.other.plist")};
    // The tree's files and empty folders.
    const QString other = QStringLiteral("Library/LaunchDaemons/org.other.plist");
    QTest::newRow("granted: removed")
        << QStringLiteral("YES") << installed << 1 << true
        << QStringList{QStringLiteral("Library/Application Support"), other};
    QTest::newRow("refused: everything stays")
        << QStringLiteral("NO") << installed << 1 << true << installed;
    QTest::newRow("nothing installed: nobody asked")
        << QStringLiteral("YES") << QStringList{other} << 0 << false << QStringList{other};
}

void TestPrivilegedRun::removalAsUser()
{
    QFETCH(QString, result);
    QFETCH(QStringList, items);
    QFETCH(int, asked);
    QFETCH(bool, logged);
    QFETCH(QStringList, after);
    if (!polkitAvailable())
        QSKIP("needs root and the polkit tools");

    const QString bin = QCoreApplication::applicationDirPath();
    // A chroot on a tmpfs inside the namespace gives the fixed /Library paths a home
    // without touching the host; pkexec keeps working there, unlike under bubblewrap's
    // no-new-privileges rule. A pkcheck wrapper counts the consent requests.
    QString body = QStringLiteral(R"sh(R='%1/root'
mkdir -p "$R"
mount -t tmpfs none "$R"
mkdir -p "$R/usr" "$R/etc" "$R/dev" "$R/proc" "$R/run/dbus" "$R/tmp" "$R/testbin" "$R/Library" "$R%2"
mount --rbind /usr "$R/usr"
mount --rbind /etc "$R/etc"
mount --rbind /dev "$R/dev"
mount -t proc proc "$R/proc"
mount --bind /run/dbus "$R/run/dbus"
mount --bind '%2' "$R%2"
for l in bin sbin lib lib64; do ln -s usr/$l "$R/$l"; done
mkdir -p "$R/var" "$R/root" && ln -s ../run "$R/var/run"
chmod 1777 "$R/tmp"
printf '#!/bin/sh
echo asked >> /tmp/consent-asked
exec /usr/bin/pkcheck "$@"
' > "$R/testbin/pkcheck"
chmod 755 "$R/testbin/pkcheck"
)sh")
                       .arg(QStringLiteral("%1"), bin);
    for (const QString &item : items)
        body +=
            QStringLiteral("mkdir -p \"$R/%1\"; rmdir \"$R/%1\"; echo x > \"$R/%1\"\n").arg(item);
    body +=
        QStringLiteral(
            R"sh(chroot "$R" setpriv --reuid 65534 --regid 65534 --clear-groups env -i PATH=/testbin:/usr/bin:/bin HOME=/tmp '%1' %2
for i in $(seq 200); do grep -qs 'rm[ ]-rf' /proc/[0-9]*/cmdline || break; sleep 0.05; done
echo "ASKED $(cat "$R/tmp/consent-asked" 2>/dev/null | wc -l)"
cd "$R" && find Library -type f -o -type d -empty | sort | sed 's/^/TREE /'
)sh")
            .arg(QCoreApplication::applicationFilePath(), QLatin1String(kRemoveAsUser));

    QByteArray out;
    QVERIFY(runWithPolkit(result, body, &out));
    QStringList tree;
    QStringList log;
    int consentRequests = -1;
    for (const QByteArray &line : out.split('\n')) {
        if (line.startsWith("TREE "))
            tree << QString::fromUtf8(line.mid(5));
        else if (line.startsWith("LOG "))
            log << QString::fromUtf8(line.mid(4));
        else if (line.startsWith("ASKED "))
            consentRequests = line.mid(6).toInt();
    }
    QCOMPARE(consentRequests, asked);
    QCOMPARE(log.size(), logged ? 1 : 0);
    if (logged)
        QVERIFY(log.first().startsWith(
            QStringLiteral("Command: rm -rf '/Library/Application Support/Quorvelle'; ")));
    QCOMPARE(tree, after);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], kRemoveAsUser) == 0)
        return removeAsUser();
    TestPrivilegedRun test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_privilegedrun.moc"
