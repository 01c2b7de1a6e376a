// The survey payload: the suite's uninstall-information file with the answers laid over it.
#include "VXUninstallSurveyController.h"

#include <Quorvelle/Foundation/JSON.h>
#include <Quorvelle/Foundation/VXThreadSafeBundle.h>
#include <Quorvelle/Foundation/VXThreadSafeBundleProxy.h>

#include <QFile>
#include <QScopeGuard>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

QString VXUninstallSurveyController::uninstallInfo() const
{
    const QString empty = QStringLiteral("{}");
    const QString path = uninstallInfoPath();
    if (path.isEmpty())
        return empty;
    // Non-blocking, so a FIFO without a writer cannot freeze the window; only a regular
    // file counts, so a device such as /dev/zero cannot grow memory without end.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return empty;
    const auto closeFd = qScopeGuard([fd] { ::close(fd); });
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size > kUninstallInfoMaxSize)
        return empty;
    // Room for the size the file has and one byte more: a file that grows while it is read
    // fills that byte, and the room doubles, up to one byte past the bound, which tells a
    // file that grew past it.
    QByteArray bytes(qsizetype(st.st_size) + 1, Qt::Uninitialized);
    qsizetype total = 0;
    for (;;) {
        if (total == bytes.size()) {
            if (total > kUninstallInfoMaxSize)
                return empty;
            bytes.resize(std::min<qint64>(2 * total, kUninstallInfoMaxSize + 1));
        }
        const ssize_t n = ::read(fd, bytes.data() + total, size_t(bytes.size() - total));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return empty;
        if (n == 0)
            break;
        total += n;
    }
    bytes.truncate(total);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    // Text that is not UTF-8 is treated like an unreadable file, not patched up.
    if (decoder.hasError())
        return empty;
    return text;
}

QString VXUninstallSurveyController::version() const
{
    const std::optional<PropertyValue> value =
        VXThreadSafety::threadSafeMainBundle()->objectForInfoDictionaryKey(
            QStringLiteral("CFBundleShortVersionString"));
    return value ? value->toString() : QString();
}

PropertyValue::Dictionary VXUninstallSurveyController::uninstallData() const
{
    const std::optional<PropertyValue::Dictionary> info =
        JSON::dictionaryWithJSONString(uninstallInfo());
    PropertyValue::Dictionary data = info.value_or(PropertyValue::Dictionary());

    // Integer numbers for the reason keys, boolean numbers for the flags: both travel
    // as 1/0, the server tells them apart by name only.
    const auto integerFor = [this](quint64 reason) {
        return PropertyValue(qint64(uninstallingReason() == reason ? 1 : 0));
    };

    data.insert(QStringLiteral("version"), version());
    data.insert(QStringLiteral("comment"), comment().isNull() ? QStringLiteral("") : comment());
    data.insert(QStringLiteral("other"), integerFor(1));
    data.insert(QStringLiteral("fairPrice"), integerFor(2));
    data.insert(QStringLiteral("featureSatisfaction"), integerFor(4));
    data.insert(QStringLiteral("easeofUse"), PropertyValue(tooComplexToUse()));
    data.insert(QStringLiteral("supportQuality"), integerFor(5));

    if (uninstallingReason() == 2) {
        PropertyValue::Dictionary priceIssues;
        if (notDisclosedPrice())
            priceIssues.insert(QStringLiteral("priceNotDisclosedBeforeInstall"), true);
        if (priceTooHigh())
            priceIssues.insert(QStringLiteral("priceTooHigh"), true);
        data.insert(QStringLiteral("priceIssues"), priceIssues);
    }
    if (uninstallingReason() == 3)
        data.insert(QStringLiteral("marketingIssues"), true);
    if (uninstallingReason() == 4) {
        PropertyValue::Dictionary featureIssues;
        if (uselessSoftware())
            featureIssues.insert(QStringLiteral("featuresUnused"), true);
        if (tooComplexToUse())
            featureIssues.insert(QStringLiteral("easeofUse"), true);
        if (slowedDownComputer())
            featureIssues.insert(QStringLiteral("computerSlowedDown"), true);
        data.insert(QStringLiteral("featureIssues"), featureIssues);
    }
    if (uninstallingReason() == 5) {
        PropertyValue::Dictionary supportIssues;
        if (slowSupportResponse())
            supportIssues.insert(QStringLiteral("slowResponse"), true);
        if (unprofessionalSupport())
            supportIssues.insert(QStringLiteral("unprofessionalSupport"), true);
        data.insert(QStringLiteral("supportIssues"), supportIssues);
    }

    // The file's own user name always wins, whatever the survey keys did.
    if (info) {
        const auto userName = info->constFind(QStringLiteral("userName"));
        if (userName != info->cend())
            data.insert(QStringLiteral("userName"), *userName);
    }
    return data;
}
