// Sending the survey to the account service before the removal.
#include "VXUninstallSurveyController.h"

#include "VXProductInformation.h"

#include <Quorvelle/Foundation/JSON.h>

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <atomic>
#include <cstdio>
#include <mutex>

namespace {
// Qt has no transfer time-out of its own: without one a server that accepts and never
// answers would keep the uninstaller waiting forever.
std::atomic<int> submissionTimeout{60000};

// The body goes without a content type of our own, so Qt adds its form default and warns
// about it on every send. The warning is about this deliberate choice, not something the
// user can act on, so this one message is dropped; everything else passes on unchanged.
QtMessageHandler previousHandler = nullptr;

void dropMissingContentTypeWarning(QtMsgType type, const QMessageLogContext &context,
                                   const QString &message)
{
    if (type == QtWarningMsg &&
        message.startsWith(QLatin1String("content-type missing in HTTP POST")))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
    else
        std::fputs(qPrintable(qFormatLogMessage(type, context, message) + u'\n'), stderr);
}
} // namespace

void VXUninstallSurveyController::setSubmissionTimeoutForTesting(int milliseconds)
{
    submissionTimeout = milliseconds;
}

void VXUninstallSurveyController::uninstall()
{
    if (_actionStarted)
        return;
    _actionStarted = true;
    // The send blocks the window; clicks made meanwhile must be dropped, not replayed after
    // it: a disabled window discards them.
    if (_surveyWindow)
        _surveyWindow->setEnabled(false);
    static std::once_flag filterInstalled;
    std::call_once(filterInstalled,
                   [] { previousHandler = qInstallMessageHandler(dropMissingContentTypeWarning); });

    // A plain "name=value" body: the server reads the JSON as it stands, so nothing is
    // percent-encoded, even "&", "+" or "=" in the comment.
    const QByteArray body = "uninstallData=" + JSON::JSONUtf8(uninstallData());

    const QUrl url = VXProductInformation::accountServiceSecureURLWithPath(
        QStringLiteral("/mac/uninstall-survey"));
    if (url.isValid()) {
        QNetworkAccessManager manager;
        QNetworkRequest request(url);
        request.setTransferTimeout(submissionTimeout);
        // The survey carries the user's name: it may be redirected within the service, never
        // to another host and never down to plain HTTP.
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::SameOriginRedirectPolicy);
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
