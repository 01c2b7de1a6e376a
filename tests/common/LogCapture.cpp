#include "LogCapture.h"

#include <QMutex>

#include <cstring>

namespace {
QMutex mutex;
QStringList captured; // guarded by mutex
QtMessageHandler previous = nullptr;

void handler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (context.category && std::strcmp(context.category, "quorvelle") == 0) {
        const QMutexLocker locker(&mutex);
        return captured.append(message);
    }
    if (previous)
        previous(type, context, message);
}
} // namespace

LogCapture::LogCapture()
{
    clear();
    // A capture made while another lives must not take the handler as the one to pass to.
    if (const QtMessageHandler old = qInstallMessageHandler(handler); old != handler)
        previous = old;
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous);
    clear();
}

QStringList LogCapture::lines() const
{
    const QMutexLocker locker(&mutex);
    return captured;
}

void LogCapture::clear()
{
    const QMutexLocker locker(&mutex);
    captured.clear();
}
