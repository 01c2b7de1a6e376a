// About this computer: what the kit's system information knows about this machine, in a
// small window of the suite.
//   about-this-computer [--section N] [--grab FILE]
// --grab draws the window once into FILE (PNG) and quits, as on a headless machine
// (QT_QPA_PLATFORM=offscreen).
#include "AboutWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPixmap>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("about-this-computer"));
    QApplication::setApplicationDisplayName(
        QCoreApplication::translate("AboutWindow", "About this computer"));

    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption grab(QStringLiteral("grab"),
                                  QStringLiteral("Draw the window into FILE (PNG) and quit."),
                                  QStringLiteral("FILE"));
    const QCommandLineOption section(QStringLiteral("section"),
                                     QStringLiteral("Show section N (0: overview)."),
                                     QStringLiteral("N"), QStringLiteral("0"));
    parser.addOptions({grab, section});
    parser.process(app);

    AboutWindow window(SystemFacts::collect());
    window.showSection(parser.value(section).toInt());
    window.show();

    if (parser.isSet(grab)) {
        QApplication::processEvents();
        const QString file = parser.value(grab);
        if (!window.grab().save(file, "PNG")) {
            std::fprintf(stderr, "about-this-computer: cannot write %s\n", qPrintable(file));
            return 1;
        }
        return 0;
    }
    return app.exec();
}
