#include "VXUninstallSurveyController.h"

VXUninstallSurveyController::VXUninstallSurveyController(QObject *parent) : QObject(parent) {}

VXUninstallSurveyController::~VXUninstallSurveyController() = default;

void VXUninstallSurveyController::setUninstallingReason(quint64 reason)
{
    if (reason == _uninstallingReason)
        return;
    _uninstallingReason = reason;
    resetPreviousValues();
    // Observers hear of the reason once the whole change, reset included, is done.
    Q_EMIT uninstallingReasonChanged(reason);
    Q_EMIT reasonSelectedChanged(isReasonSelected());
}

void VXUninstallSurveyController::resetPreviousValues()
{
    setComment(QString());
    setNotDisclosedPrice(false);
    setPriceTooHigh(false);
    setUselessSoftware(false);
    setTooComplexToUse(false);
    setSlowedDownComputer(false);
    setSlowSupportResponse(false);
    setUnprofessionalSupport(false);
}

void VXUninstallSurveyController::setComment(const QString &comment)
{
    // A null string (no comment) and an empty one are different answers.
    if (comment == _comment && comment.isNull() == _comment.isNull())
        return;
    _comment = comment;
    Q_EMIT commentChanged(_comment);
}

#define VX_FLAG_SETTER(Setter, member, signal)                                                     \
    void VXUninstallSurveyController::Setter(bool value)                                           \
    {                                                                                              \
        if (member == value)                                                                       \
            return;                                                                                \
        member = value;                                                                            \
        Q_EMIT signal(value);                                                                      \
    }

VX_FLAG_SETTER(setNotDisclosedPrice, _notDisclosedPrice, notDisclosedPriceChanged)
VX_FLAG_SETTER(setPriceTooHigh, _priceTooHigh, priceTooHighChanged)
VX_FLAG_SETTER(setUselessSoftware, _uselessSoftware, uselessSoftwareChanged)
VX_FLAG_SETTER(setTooComplexToUse, _tooComplexToUse, tooComplexToUseChanged)
VX_FLAG_SETTER(setSlowedDownComputer, _slowedDownComputer, slowedDownComputerChanged)
VX_FLAG_SETTER(setSlowSupportResponse, _slowSupportResponse, slowSupportResponseChanged)
VX_FLAG_SETTER(setUnprofessionalSupport, _unprofessionalSupport, unprofessionalSupportChanged)

#undef VX_FLAG_SETTER
