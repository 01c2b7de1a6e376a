#pragma once

#include <QLoggingCategory>
#include <QString>

// The system log of the program: one line per call, through the "quorvelle" logging
// category, so it reaches standard error (and the journal) and tests can capture it
// with a Qt message handler.
Q_DECLARE_LOGGING_CATEGORY(lcQuorvelle)

void VXLog(const QString &line);
