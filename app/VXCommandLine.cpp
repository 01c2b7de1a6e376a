#include "VXCommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

VXCommandLine VXCommandLine::parse(const QStringList &arguments)
{
    // Our own help and version options: the parser's stock help option would also offer
    // --help-all, which lists Qt's window-system options that this program refuses.
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")},
        QCoreApplication::translate("VXCommandLine", "Displays this help and exits."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")},
        QCoreApplication::translate("VXCommandLine", "Displays the version and exits."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "VXCommandLine", "Asks why Quorvelle is being uninstalled, then removes the suite. "
                         "The suite starts it with its uninstall-information file."));
    // "-platform" reads as one (refused) option, not as the letters p, l, a, ...
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption(help);
    parser.addOption(version);
    parser.addPositionalArgument(
        QStringLiteral("file"),
        QCoreApplication::translate("VXCommandLine", "The uninstall-information file."),
        QStringLiteral("[file]"));

    VXCommandLine line;
    const QString name = QCoreApplication::applicationName();
    if (!parser.parse(arguments)) {
        line.proceed = false;
        line.exitCode = 2;
        line.error =
            name + QStringLiteral(": ") + parser.errorText() + u'\n' +
            QCoreApplication::translate("VXCommandLine", "Try '%1 --help' for more information.")
                .arg(name) +
            u'\n';
        return line;
    }
    if (parser.isSet(help)) {
        line.proceed = false;
        line.output = parser.helpText();
        return line;
    }
    if (parser.isSet(version)) {
        line.proceed = false;
        line.output = name + u' ' + QCoreApplication::applicationVersion() + u'\n';
        return line;
    }
    const QStringList positional = parser.positionalArguments();
    if (!positional.isEmpty())
        line.informationFile = positional.first();
    return line;
}
