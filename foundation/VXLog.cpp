#include "VXLog.h"

Q_LOGGING_CATEGORY(lcQuorvelle, "quorvelle", QtInfoMsg)

void VXLog(const QString &line)
{
    qCInfo(lcQuorvelle).noquote() << line;
}
