// Stand-ins for the submission and the removal until their code lands: the survey is not
// sent and nothing is removed; the sequence ends as it will (window out, then quit).
#include "VXUninstallSurveyController.h"

#include <QCoreApplication>

bool VXUninstallSurveyController::applicationOpenFile(const QString &path)
{
    setUninstallInfoPath(path);
    return true;
}

void VXUninstallSurveyController::uninstall()
{
    proceedUninstall();
}

void VXUninstallSurveyController::proceedUninstall()
{
    if (_surveyWindow)
        _surveyWindow->hide();
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
}
