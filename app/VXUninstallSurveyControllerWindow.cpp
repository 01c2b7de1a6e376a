// The window side of the controller: the launch-time gate and set-up of the survey window,
// and the offer button.
#include "VXUninstallSurveyController.h"

#include "VXNetworkReachability.h"
#include "VXProductInformation.h"

#include <Quorvelle/Foundation/VXThreadSafeBundle.h>
#include <Quorvelle/Foundation/VXThreadSafeBundleProxy.h>

#include <QCoreApplication>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QUrl>

void VXUninstallSurveyController::awakeFromNib()
{
    if (!VXNetworkReachability::reachability()->isReachable()) {
        proceedUninstall();
        return;
    }
    QWidget *window = _surveyWindow;
    if (!window)
        return;

    // The description's title is its own key (and default) in the default strings table.
    const QString title = window->windowTitle();
    window->setWindowTitle(
        VXThreadSafety::threadSafeMainBundle()->localizedStringForKey(title, title, QString()));

    QPalette palette = window->palette();
    palette.setColor(QPalette::Window, Qt::white);
    window->setPalette(palette);
    window->setAutoFillBackground(true);

    // Floats above ordinary windows like a status window: the nearest a Qt window gets to a
    // level of its own is to stay on top.
    window->setWindowFlag(Qt::WindowStaysOnTopHint, true);

    window->adjustSize();
    if (QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen()) {
        QRect frame = window->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        window->move(frame.topLeft());
    }

    window->show();
    window->raise();
    window->activateWindow();
}

void VXUninstallSurveyController::getQuorvelleForFree()
{
    if (_actionStarted)
        return;
    _actionStarted = true;
    // A page that fails to open changes nothing: the product stays and the program ends.
    QDesktopServices::openUrl(VXProductInformation::partnerOfferURL());
    // exit(), not quit(): quit() first asks the windows to close, and the survey window
    // refuses that.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}
