#pragma once

#include "Tools.h"
#include "VXSystemInformation.h"
#include "VXSystemInformationSeam.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// Files of a fake machine: path → content. A content "->target" makes a symbolic link, a
// path ending in "/" a folder. Paths starting with "~" are in the home folder, "%" in the
// scratch folder that holds the root and the home folder.
using Files = QMap<QString, QByteArray>;

// A machine made of files in a temporary folder, handed to VXSystemInformation through its
// seam, with a fresh home folder and no XDG variables. The real machine comes back after.
class FakeMachine
{
public:
    explicit FakeMachine(const Files &files = {})
    {
        VXSystemInformation::Seam::reset();
        VXSystemInformation::Seam::setRoot(rootPath());
        QDir().mkpath(homePath());
        qputenv("HOME", homePath().toUtf8());
        for (const char *variable :
             {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            qunsetenv(variable);
        build(files);
    }
    ~FakeMachine()
    {
        VXSystemInformation::Seam::reset();
        qputenv("HOME", m_savedHome);
    }

    QString rootPath() const { return m_dir.path() + u"/root"_s; }
    QString homePath() const { return m_dir.path() + u"/home"_s; }
    QString resolve(const QString &path) const
    {
        if (path.startsWith(u'~'))
            return homePath() + path.mid(1);
        return path.startsWith(u'%') ? m_dir.path() + path.mid(1) : rootPath() + path;
    }
    void build(const Files &files) const
    {
        for (auto it = files.cbegin(); it != files.cend(); ++it) {
            const QString full = resolve(it.key());
            QDir().mkpath(QFileInfo(full).absolutePath());
            QFile::remove(full);
            QFile file(full);
            if (it.key().endsWith(u'/'))
                QDir().mkpath(full);
            else if (it->startsWith("->"))
                QFile::link(QString::fromUtf8(it->mid(2)), full);
            else if (!file.open(QIODevice::WriteOnly) || file.write(*it) != it->size())
                qFatal("cannot write %s", qPrintable(full));
        }
    }

    // Installs a report tool that records its arguments, prints the given bytes and a line
    // on standard error, and ends with the given status.
    void reportTool(const QByteArray &output, int exitStatus = 0) const
    {
        const QString script = u"#!/bin/sh\nprintf '%s\\n' \"$@\" > '%1/tool.args'\n"
                               "echo noise >&2\ncat '%1/tool.out'\nexit %2\n"_s;
        build({{u"%/tool.out"_s, output},
               {u"%/tool.sh"_s, script.arg(m_dir.path()).arg(exitStatus).toUtf8()}});
        QFile::setPermissions(resolve(u"%/tool.sh"_s), QFile::ReadOwner | QFile::ExeOwner);
        VXSystemInformation::Seam::setReportToolPath(resolve(u"%/tool.sh"_s));
    }
    // One argument a line; a lone line break when there were none.
    QByteArray reportToolArguments() const
    {
        return Tools::readFile(resolve(u"%/tool.args"_s), "<not run>");
    }

    // The desktop's application database is read once per process, from the XDG variables
    // of its start. Runs this test program afresh with "--answers" and those variables
    // pointing into this machine (the working folder is the scratch folder; `environment`
    // adds or overrides "NAME=value" entries, "%" standing for the scratch folder and an
    // empty value removing the variable), and gives the lines it prints.
    QStringList answersOfFreshProcess(const QStringList &environment = {}) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CURRENT_DESKTOP"})
            env.remove(QString::fromLatin1(variable));
        env.insert(u"HOME"_s, homePath());
        env.insert(u"QV_FAKE_ROOT"_s, rootPath());
        env.insert(u"XDG_DATA_DIRS"_s,
                   rootPath() + u"/usr/local/share:"_s + rootPath() + u"/usr/share"_s);
        env.insert(u"XDG_CONFIG_DIRS"_s, rootPath() + u"/etc/xdg"_s);
        for (const QString &entry : environment) {
            const QString value = entry.section(u'=', 1).replace(u'%', m_dir.path());
            if (value.isEmpty())
                env.remove(entry.section(u'=', 0, 0));
            else
                env.insert(entry.section(u'=', 0, 0), value);
        }
        const Tools::Outcome child = Tools::run(QCoreApplication::applicationFilePath(),
                                                {u"--answers"_s}, 60000, env, m_dir.path());
        if (child.exitCode != 0)
            return {u"<child failed>"_s, QString::fromUtf8(child.errors)};
        return QString::fromUtf8(child.output).split(u'\n', Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_savedHome = qgetenv("HOME");
};
