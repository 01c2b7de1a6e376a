#pragma once

#include <QString>
#include <QStringList>

// The program's command line. The suite starts the uninstaller with one argument, the
// uninstall-information file; --help and --version answer and end the program, and any
// other option is refused, so a mistyped option is never taken for the information file.
struct VXCommandLine
{
    bool proceed = true;     // false: print output/error and exit with exitCode
    int exitCode = 0;        // 0 for --help and --version, 2 for a refused option
    QString output;          // for standard output
    QString error;           // for standard error
    QString informationFile; // the first positional argument; null when there is none

    // arguments: the program name followed by its arguments.
    static VXCommandLine parse(const QStringList &arguments);
};
