#pragma once

#include <QStringList>

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
    void clear();
};
