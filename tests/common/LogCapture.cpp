#include "LogCapture.h"

#include <QMutex>
#include <QMutexLocker>

#include <cstring>

namespace {
QMutex mutex;
QStringList captured;
QtMessageHandler previous = nullptr;
bool active = false;

void handler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (context.category && std::strcmp(context.category, "quorvelle") == 0) {
        QMutexLocker locker(&mutex);
        if (active) {
            captured.append(message);
            return;
        }
    }
    if (previous)
        previous(type, context, message);
}
} // namespace

LogCapture::LogCapture()
{
    QMutexLocker locker(&mutex);
    captured.clear();
    active = true;
    previous = qInstallMessageHandler(handler);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous);
    QMutexLocker locker(&mutex);
    active = false;
    captured.clear();
}

QStringList LogCapture::lines() const
{
    QMutexLocker locker(&mutex);
    return captured;
}

void LogCapture::clear()
{
    QMutexLocker locker(&mutex);
    captured.clear();
}
