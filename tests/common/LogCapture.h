#pragma once

#include <QStringList>
#include <QtGlobal>

// Captures the program's log lines (the "quorvelle" category) for the lifetime of the
// object; other messages go on to the previous handler. Not thread-safe to construct,
// but lines logged from any thread are collected.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const;
    int count(const QString &line) const { return int(lines().count(line)); }
    void clear();
};
