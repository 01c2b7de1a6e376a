#include "VXApplicationMain.h"

#include "VXSurveyWindowLoader.h"
#include "VXUninstallSurveyController.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>
#include <QWidget>

int VXApplicationMain(int argc, char *argv[])
{
    QApplication application(argc, argv);
    // Closing the survey window is not a way out: the program ends through its buttons.
    QApplication::setQuitOnLastWindowClosed(false);

    const QString bundle = QCoreApplication::applicationDirPath();
    QTranslator windowStrings;
    if (windowStrings.load(QLocale(), QStringLiteral("window"), QStringLiteral("_"),
                           QDir(bundle).filePath(QStringLiteral("translations"))))
        QCoreApplication::installTranslator(&windowStrings);

    VXSurveyWindowLoader::Loaded loaded = VXSurveyWindowLoader::loadMainWindowDescription(bundle);
    if (!loaded)
        return 1;

#ifdef QV_TEST_SUBMISSION_TIMEOUT_MS
    // Test builds only: a service that never answers must not hold an end-to-end run for the
    // full minute.
    loaded.controller->setSubmissionTimeoutForTesting(QV_TEST_SUBMISSION_TIMEOUT_MS);
#endif

    // The suite launches the uninstaller with one document, the uninstall-information file.
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1)
        loaded.controller->applicationOpenFile(arguments.at(1));

    return QApplication::exec();
}
