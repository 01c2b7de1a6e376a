#pragma once

#include "VXSystemInformation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <unistd.h>

// A machine made of files: a temporary root for the system paths and a home folder, handed
// to VXSystemInformation through its seam. The real machine comes back when it goes away.
class FakeMachine
{
public:
    FakeMachine()
    {
        VXSystemInformation::Seam::reset();
        VXSystemInformation::Seam::setRoot(rootPath());
        QDir().mkpath(homePath());
        qputenv("HOME", homePath().toUtf8());
        for (const char *variable :
             {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            qunsetenv(variable);
    }
    ~FakeMachine()
    {
        VXSystemInformation::Seam::reset();
        qputenv("HOME", m_savedHome);
    }
    FakeMachine(const FakeMachine &) = delete;
    FakeMachine &operator=(const FakeMachine &) = delete;

    QString rootPath() const { return m_dir.path() + QStringLiteral("/root"); }
    QString homePath() const { return m_dir.path() + QStringLiteral("/home"); }
    QString scratchPath() const { return m_dir.path(); }

    // Writes a file below the fake root ("/sys/...") or anywhere when the path is absolute
    // inside the temporary folder already.
    void write(const QString &path, const QByteArray &bytes) const
    {
        const QString full = resolve(path);
        QVERIFY(QDir().mkpath(QFileInfo(full).absolutePath()));
        QFile file(full);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void mkdir(const QString &path) const { QVERIFY(QDir().mkpath(resolve(path))); }
    void link(const QString &target, const QString &path) const
    {
        const QString full = resolve(path);
        QVERIFY(QDir().mkpath(QFileInfo(full).absolutePath()));
        QFile::remove(full);
        QVERIFY(QFile::link(target, full));
    }
    QString resolve(const QString &path) const
    {
        if (path.startsWith(QLatin1Char('~')))
            return homePath() + path.mid(1);
        return rootPath() + path;
    }

    // A report tool that prints the given bytes (and, when noisy, a line on standard error)
    // and records its arguments, one a line.
    QString reportTool(const QByteArray &output, int exitStatus = 0, bool noisy = false) const
    {
        const QString out = scratchPath() + QStringLiteral("/tool.out");
        QFile data(out);
        if (!data.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            data.write(output) != output.size())
            qFatal("cannot write the fake tool's output");
        data.close();
        const QString script = scratchPath() + QStringLiteral("/tool.sh");
        QFile file(script);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            qFatal("cannot write the fake tool");
        file.write(QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" > '%1/tool.args'\n"
                                  "%4cat '%2'\nexit %3\n")
                       .arg(scratchPath(), out)
                       .arg(exitStatus)
                       .arg(noisy ? QStringLiteral("echo 'tool diagnostics' >&2\n") : QString())
                       .toUtf8());
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        VXSystemInformation::Seam::setReportToolPath(script);
        return script;
    }
    QStringList reportToolArguments() const
    {
        QFile file(scratchPath() + QStringLiteral("/tool.args"));
        if (!file.open(QIODevice::ReadOnly))
            return {QStringLiteral("<not run>")};
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        lines.removeLast();
        if (lines == QStringList{QString()})
            return {};
        return lines;
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_savedHome = qgetenv("HOME");
};

// What the code under test prints on standard output while the object lives.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        std::fflush(stdout);
        m_file.open();
        m_saved = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    ~StdoutCapture() { restore(); }
    QByteArray text()
    {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore()
    {
        if (m_saved < 0)
            return;
        std::fflush(stdout);
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
        m_saved = -1;
    }
    QTemporaryFile m_file;
    int m_saved = -1;
};
