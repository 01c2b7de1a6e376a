// Sending the survey to the account service before the removal.
#include "VXUninstallSurveyController.h"

#include "JSON.h"
#include "VXProductInformation.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <atomic>

namespace {
// Qt has no transfer time-out of its own: without one a server that accepts and never
// answers would keep the uninstaller waiting forever.
std::atomic<int> submissionTimeout{60000};
} // namespace

void VXUninstallSurveyController::setSubmissionTimeoutForTesting(int milliseconds)
{
    submissionTimeout = milliseconds;
}

void VXUninstallSurveyController::uninstall()
{
    const QString json = JSON::JSONString(uninstallData());
    // A plain "name=value" body: the server reads the JSON as it stands, so nothing is
    // percent-encoded, even "&", "+" or "=" in the comment.
    const QByteArray body =
        QStringLiteral("%1=%2").arg(QStringLiteral("uninstallData"), json).toUtf8();

    const QUrl url = VXProductInformation::accountServiceSecureURLWithPath(
        QStringLiteral("/mac/uninstall-survey"));
    if (url.isValid()) {
        QNetworkAccessManager manager;
        QNetworkRequest request(url);
        request.setTransferTimeout(submissionTimeout);
        QNetworkReply *reply = manager.post(request, body);
        // Synchronous on purpose: the window waits until the survey is away.
        QEventLoop loop;
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        if (!reply->isFinished())
            loop.exec(QEventLoop::ExcludeUserInputEvents);
        // The answer, good or bad, changes nothing.
        delete reply;
    }
    proceedUninstall();
}
