#pragma once

#include <Quorvelle/SystemInformation/SystemInformationExport.h>

#include <QByteArray>
#include <QStringList>

// Bridges the report vocabulary (data types, "-xml", "-detailLevel") and the hardware
// lister that produces the reports on Linux (lshw).
namespace Quorvelle::ReportToolAdapter {

// The lister's own arguments for report-vocabulary arguments.
QV_SYSTEMINFORMATION_TESTS_EXPORT QStringList toolArguments(const QStringList &arguments);

// The lister's text report with the labels the readers look for: the machine's "product: "
// becomes "Model Name: " and the system memory's "size: " becomes "Memory: ". Every other
// byte, line breaks included, stays as it was.
QV_SYSTEMINFORMATION_TESTS_EXPORT QByteArray relabelText(const QByteArray &text);

// The lister's XML tree as a property list: an array with one dictionary per requested data
// type the lister knows ("_dataType", "_items"), each item one node of the matching classes.
// Bytes that are not the lister's tree come back unchanged.
QV_SYSTEMINFORMATION_TESTS_EXPORT QByteArray toPropertyList(const QByteArray &toolXml,
                                                            const QStringList &dataTypes);

} // namespace Quorvelle::ReportToolAdapter
