#include "VXApplicationMain.h"

#include "VXCommandLine.h"
#include "VXConfiguration.h"
#include "VXNetworkReachability.h"
#include "VXSurveyWindowLoader.h"
#include "VXUninstallSurveyController.h"

#include <Quorvelle/Foundation/Bundle.h>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>
#include <QWidget>

#include <cstdio>
#include <functional>
#include <memory>

using Quorvelle::Bundle;

namespace {

// The user's language for the window's own texts and for Qt's standard ones (the comment
// field's context menu, the command line's messages). Installed on whichever application
// object exists; a language without files simply stays English.
struct Translations
{
    QTranslator qt, window;

    Translations()
    {
        if (qt.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&qt);
        const QString folder =
            QDir(Bundle::mainBundle()->bundlePath()).filePath(QStringLiteral("translations"));
        if (window.load(QLocale(), QStringLiteral("window"), QStringLiteral("_"), folder))
            QCoreApplication::installTranslator(&window);
    }
};

// Runs work on context's thread after the event loop's first aboutToBlock: by then the
// window system's connection has been flushed (the window's map request with it), and a
// zero timer alone would run before that, in the same pass.
void whenEventLoopFirstWaits(QObject *context, std::function<void()> work)
{
    auto *dispatcher = QAbstractEventDispatcher::instance(context->thread());
    auto once = std::make_shared<QMetaObject::Connection>();
    *once = QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, context,
                             [once, context, work = std::move(work)] {
                                 QObject::disconnect(*once);
                                 QTimer::singleShot(0, context, work);
                             });
}

void print(FILE *stream, const QString &text)
{
    if (!text.isEmpty()) {
        std::fputs(text.toLocal8Bit().constData(), stream);
        std::fflush(stream);
    }
}

} // namespace

int VXApplicationMain(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringView(QV_CONFIG_PROGRAM_NAME).toString());
    QCoreApplication::setApplicationVersion(QStringView(QV_CONFIG_PROGRAM_VERSION).toString());
    // Lets Wayland compositors and window lists find the desktop entry (name and icon).
    QGuiApplication::setDesktopFileName(QStringView(QV_CONFIG_DESKTOP_FILE_NAME).toString());

    // Options are settled before any window system is reached, so --help and --version
    // work without a display and a refused option never gets near the reachability test
    // or the removal. The suite's own start (one file name) takes none of this road.
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] != '-' || argv[i][1] == '\0')
            continue;
        QCoreApplication core(argc, argv);
        const Translations translations;
        const VXCommandLine line = VXCommandLine::parse(QCoreApplication::arguments());
        print(stdout, line.output);
        print(stderr, line.error);
        if (!line.proceed)
            return line.exitCode;
        break;
    }

    // The window's first question is whether the account service's host resolves: the
    // lookup runs on the resolver's thread while the application and the window are made.
    VXNetworkReachability::startResolvingAccountHost();

    QApplication application(argc, argv);
    // Closing the survey window is not a way out: the program ends through its buttons.
    QApplication::setQuitOnLastWindowClosed(false);
    const Translations translations;

    VXSurveyWindowLoader::Loaded loaded =
        VXSurveyWindowLoader::loadMainWindowDescription(Bundle::mainBundle()->bundlePath());
    if (!loaded)
        return 1;

#ifdef QV_TEST_SUBMISSION_TIMEOUT_MS
    // Test builds only: a service that never answers must not hold an end-to-end run for the
    // full minute.
    loaded.controller->setSubmissionTimeoutForTesting(QV_TEST_SUBMISSION_TIMEOUT_MS);
#endif

    // The windows' icon, for task bars that show the window's own (X11's _NET_WM_ICON): the
    // icon theme's for the desktop entry's name, so a theme can restyle it, else the
    // program's copy. Both are SVG, drawn by Qt's SVG icon engine (package libqt6svg6).
    // Given once the event loop has sent the window's map request and would wait: finding
    // the icon, loading the SVG engine and drawing it at the task bar's sizes would
    // otherwise hold the window back, and nothing inside the window depends on it.
    whenEventLoopFirstWaits(&application, [] {
        QApplication::setWindowIcon(QIcon::fromTheme(
            QGuiApplication::desktopFileName(), QIcon(QStringLiteral(":/icons/uninstaller.svg"))));
    });

    // The suite launches the uninstaller with one document, the uninstall-information file.
    const VXCommandLine line = VXCommandLine::parse(QCoreApplication::arguments());
    if (!line.informationFile.isNull())
        loaded.controller->applicationOpenFile(line.informationFile);

    return QApplication::exec();
}
