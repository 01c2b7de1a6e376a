#pragma once

#include <Quorvelle/Foundation/PropertyValue.h>

#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

// The one controller of the uninstaller: holds the survey's answers (bound to the
// window's controls through Qt properties), builds and sends the payload and runs the
// removal. This file's first section is the answers and their reset rule.
class VXUninstallSurveyController : public QObject
{
    Q_OBJECT

    // --- Survey answers ------------------------------------------------------------
    Q_PROPERTY(quint64 uninstallingReason READ uninstallingReason WRITE setUninstallingReason NOTIFY
                   uninstallingReasonChanged)
    Q_PROPERTY(bool reasonSelected READ isReasonSelected NOTIFY reasonSelectedChanged)
    Q_PROPERTY(QString comment READ comment WRITE setComment NOTIFY commentChanged)
    Q_PROPERTY(bool notDisclosedPrice READ notDisclosedPrice WRITE setNotDisclosedPrice NOTIFY
                   notDisclosedPriceChanged)
    Q_PROPERTY(bool priceTooHigh READ priceTooHigh WRITE setPriceTooHigh NOTIFY priceTooHighChanged)
    Q_PROPERTY(bool uselessSoftware READ uselessSoftware WRITE setUselessSoftware NOTIFY
                   uselessSoftwareChanged)
    Q_PROPERTY(bool tooComplexToUse READ tooComplexToUse WRITE setTooComplexToUse NOTIFY
                   tooComplexToUseChanged)
    Q_PROPERTY(bool slowedDownComputer READ slowedDownComputer WRITE setSlowedDownComputer NOTIFY
                   slowedDownComputerChanged)
    Q_PROPERTY(bool slowSupportResponse READ slowSupportResponse WRITE setSlowSupportResponse NOTIFY
                   slowSupportResponseChanged)
    Q_PROPERTY(bool unprofessionalSupport READ unprofessionalSupport WRITE setUnprofessionalSupport
                   NOTIFY unprofessionalSupportChanged)

    // --- Payload, submission and removal ---------------------------------------------
    Q_PROPERTY(QString uninstallInfoPath READ uninstallInfoPath WRITE setUninstallInfoPath NOTIFY
                   uninstallInfoPathChanged)
    Q_PROPERTY(QString uninstallInfo READ uninstallInfo)

public:
    explicit VXUninstallSurveyController(QObject *parent = nullptr);
    ~VXUninstallSurveyController() override;

    // --- Survey answers ------------------------------------------------------------
    // Reason codes: 0 none chosen yet, 1 other, 2 price not fair, 3 marketing,
    // 4 not satisfied with the features, 5 support quality.
    quint64 uninstallingReason() const { return _uninstallingReason; }
    // Choosing another reason stores it and then discards the comment and every detail
    // flag (also those of the reason just chosen); the same reason again changes nothing.
    void setUninstallingReason(quint64 reason);
    bool isReasonSelected() const { return _uninstallingReason != 0; }
    void resetPreviousValues();

    QString comment() const { return _comment; }
    void setComment(const QString &comment);
    bool notDisclosedPrice() const { return _notDisclosedPrice; }
    void setNotDisclosedPrice(bool value);
    bool priceTooHigh() const { return _priceTooHigh; }
    void setPriceTooHigh(bool value);
    bool uselessSoftware() const { return _uselessSoftware; }
    void setUselessSoftware(bool value);
    bool tooComplexToUse() const { return _tooComplexToUse; }
    void setTooComplexToUse(bool value);
    bool slowedDownComputer() const { return _slowedDownComputer; }
    void setSlowedDownComputer(bool value);
    bool slowSupportResponse() const { return _slowSupportResponse; }
    void setSlowSupportResponse(bool value);
    bool unprofessionalSupport() const { return _unprofessionalSupport; }
    void setUnprofessionalSupport(bool value);

    // --- Payload, submission and removal ---------------------------------------------
    // Path of the uninstall-information file handed over by the suite at launch. May be
    // read and written from any thread.
    QString uninstallInfoPath() const;
    void setUninstallInfoPath(const QString &path);
    // The suite's open-file request: stores the path, unchecked, and accepts it.
    bool applicationOpenFile(const QString &path);
    // The whole information file as UTF-8 text; "{}" when there is no path or the file
    // cannot be read, is not a regular file, is larger than kUninstallInfoMaxSize or is not
    // valid UTF-8.
    QString uninstallInfo() const;
    // The suite writes a few hundred bytes; 64 MiB is beyond any real information file,
    // while a wrong path (a huge log, a disk image) cannot swell the survey or the
    // program's memory without end.
    static constexpr qint64 kUninstallInfoMaxSize = 64 * 1024 * 1024;
    // The application's short version string.
    QString version() const;
    // The survey payload: the information file's keys with the answers laid over them.
    PropertyValue::Dictionary uninstallData() const;

    // System-wide parts: one shell command run as the superuser after the user's consent.
    // Nothing is asked or run when none of the system-wide items exists.
    void uninstallPriviledgedParts();
    // Removes every item of the folder whose name begins, case-sensitively, with the
    // last component of the prefix.
    void removeFilesWithPathPrefix(const QString &prefix);
    // The user's own files, each step independent of the others' success.
    void uninstallUserParts();

    // Test-only: the submission's transfer time-out in milliseconds (60000 otherwise), so
    // a server that never answers can be tested without waiting a minute.
    static void setSubmissionTimeoutForTesting(int milliseconds);

    // --- Window ----------------------------------------------------------------------
    // Runs once the window description is loaded and its outlets are connected: with the
    // account service out of reach it goes straight to the removal and the window is never
    // shown; otherwise the window is titled, styled, centred and brought to the front.
    void awakeFromNib();

public Q_SLOTS:
    // --- Payload, submission and removal ---------------------------------------------
    // The Uninstall button: sends the survey (result ignored), then proceedUninstall().
    void uninstall();
    // Hides the window, removes the system-wide and then the user's parts, and asks the
    // application to quit.
    void proceedUninstall();

    // --- Window ----------------------------------------------------------------------
    // Opens the partner's offer in the user's browser and quits: nothing is removed and no
    // survey is sent.
    void getQuorvelleForFree();

Q_SIGNALS:
    // --- Payload, submission and removal ---------------------------------------------
    void uninstallInfoPathChanged(const QString &path);

    // --- Survey answers ------------------------------------------------------------
    void uninstallingReasonChanged(quint64 reason);
    // Announced on every change of the reason, as the reason's dependent key.
    void reasonSelectedChanged(bool selected);
    void commentChanged(const QString &comment);
    void notDisclosedPriceChanged(bool value);
    void priceTooHighChanged(bool value);
    void uselessSoftwareChanged(bool value);
    void tooComplexToUseChanged(bool value);
    void slowedDownComputerChanged(bool value);
    void slowSupportResponseChanged(bool value);
    void unprofessionalSupportChanged(bool value);

private:
    // --- Payload, submission and removal ---------------------------------------------
    QPointer<QWidget> _surveyWindow; // connected by the window loader
    mutable QMutex _uninstallInfoPathLock;
    QString _uninstallInfoPath; // null until the open-file request arrives
    // Set once uninstall or the offer has begun: later actions of the window are dropped,
    // also the clicks Qt held back while the survey was being sent.
    bool _actionStarted = false;
    bool _removalStarted = false; // proceedUninstall runs once per process

    // --- Window ----------------------------------------------------------------------
    friend class VXSurveyWindowLoader; // connects the outlet

    // --- Survey answers ------------------------------------------------------------
    quint64 _uninstallingReason = 0;
    QString _comment; // null string: no comment
    bool _notDisclosedPrice = false;
    bool _priceTooHigh = false;
    bool _uselessSoftware = false;
    bool _tooComplexToUse = false;
    bool _slowedDownComputer = false;
    bool _slowSupportResponse = false;
    bool _unprofessionalSupport = false;
};
