#pragma once

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

    // --- Window ----------------------------------------------------------------------
    // Runs once the window description is loaded and its outlets are connected: with the
    // account service out of reach it goes straight to the removal and the window is never
    // shown; otherwise the window is titled, styled, centred and brought to the front.
    void awakeFromNib();

public Q_SLOTS:
    // --- Window ----------------------------------------------------------------------
    // Opens the partner's offer in the user's browser and quits: nothing is removed and no
    // survey is sent.
    void getQuorvelleForFree();

    // --- Removal (provisional: replaced by the removal code when it lands) ------------
    bool applicationOpenFile(const QString &path);
    void uninstall();
    void proceedUninstall();

public:
    QString uninstallInfoPath() const { return _uninstallInfoPath; }
    void setUninstallInfoPath(const QString &path) { _uninstallInfoPath = path; }

Q_SIGNALS:
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
    // --- Window ----------------------------------------------------------------------
    friend class VXSurveyWindowLoader; // connects the outlet

    // --- Removal (provisional) ---------------------------------------------------------
    QPointer<QWidget> _surveyWindow;
    QString _uninstallInfoPath;

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
