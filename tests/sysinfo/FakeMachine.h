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

// Files of a fake machine: path → content. A content "->target" makes a symbolic link, a
// path ending in "/" a folder. Paths starting with "~" are in the home folder.
using Files = QMap<QString, QByteArray>;

// The value of a test-data column, for use inside an expression.
#define FETCHED(Type, name)                                                                        \
    ([] {                                                                                          \
        QFETCH(Type, name);                                                                        \
        return name;                                                                               \
    }())

// Null (nothing known) and empty are different answers.
#define COMPARE_TEXT(actual, expected)                                                             \
    do {                                                                                           \
        const QString a_ = (actual), e_ = (expected);                                              \
        QCOMPARE(a_, e_);                                                                          \
        QCOMPARE(a_.isNull(), e_.isNull());                                                        \
    } while (false)

// A machine made of files in a temporary folder, handed to VXSystemInformation through its
// seam, with a fresh home folder and no XDG variables. The real machine comes back after.
class FakeMachine
{
public:
    FakeMachine()
    {
        VXSystemInformation::Seam::reset();
        VXSystemInformation::Seam::setRoot(rootPath());
        QDir().mkpath(homePath());
        QDir().mkpath(rootPath());
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

    QString rootPath() const { return m_dir.path() + QStringLiteral("/root"); }
    QString homePath() const { return m_dir.path() + QStringLiteral("/home"); }
    QString scratchPath() const { return m_dir.path(); }
    QString resolve(const QString &path) const
    {
        return path.startsWith(QLatin1Char('~')) ? homePath() + path.mid(1) : rootPath() + path;
    }

    void write(const QString &path, const QByteArray &bytes) const
    {
        const QString full = resolve(path);
        QDir().mkpath(QFileInfo(full).absolutePath());
        QFile::remove(full);
        QFile file(full);
        if (path.endsWith(QLatin1Char('/')))
            QDir().mkpath(full);
        else if (bytes.startsWith("->"))
            QFile::link(QString::fromUtf8(bytes.mid(2)), full);
        else if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(full));
    }
    void build(const Files &files) const
    {
        for (auto it = files.cbegin(); it != files.cend(); ++it)
            write(it.key(), it.value());
    }

    // Installs a report tool that records its arguments and prints the given bytes (and,
    // when noisy, a line on standard error).
    void reportTool(const QByteArray &output, int exitStatus = 0, bool noisy = false) const
    {
        const QString dir = scratchPath();
        write(QStringLiteral("/../tool.out"), output);
        write(QStringLiteral("/../tool.sh"),
              QStringLiteral(
                  "#!/bin/sh\nprintf '%s\\n' \"$@\" > '%1/tool.args'\n"
                  "printf '%s' \"$LC_ALL\" > '%1/tool.locale'\n%2cat '%1/tool.out'\nexit %3\n")
                  .arg(dir, noisy ? QStringLiteral("echo 'tool diagnostics' >&2\n") : QString())
                  .arg(exitStatus)
                  .toUtf8());
        QFile::setPermissions(dir + QStringLiteral("/tool.sh"), QFile::ReadOwner | QFile::ExeOwner);
        VXSystemInformation::Seam::setReportToolPath(dir + QStringLiteral("/tool.sh"));
    }
    QStringList reportToolArguments() const
    {
        QFile file(scratchPath() + QStringLiteral("/tool.args"));
        if (!file.open(QIODevice::ReadOnly))
            return {QStringLiteral("<not run>")};
        const QString text = QString::fromUtf8(file.readAll());
        return text == QLatin1String("\n") ? QStringList()
                                           : text.chopped(1).split(QLatin1Char('\n'));
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
    ~StdoutCapture() { text(); }
    QByteArray text()
    {
        if (m_saved >= 0) {
            std::fflush(stdout);
            dup2(m_saved, STDOUT_FILENO);
            close(m_saved);
            m_saved = -1;
        }
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};
