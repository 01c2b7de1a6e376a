#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QLoggingCategory>
#include <QString>

/** \file
 * Writing to the system log. */

/**
 * The system log of the program: one line per call, through the "quorvelle" logging
 * category, so it reaches standard error (and the journal) and tests can capture it
 * with a Qt message handler. (Declared by hand: the macro that exports it is Qt 6.5.)
 */
QV_FOUNDATION_EXPORT const QLoggingCategory &lcQuorvelle();

/** Writes one line to the system log (category lcQuorvelle(), level info); thread-safe. */
QV_FOUNDATION_EXPORT void VXLog(const QString &line);
