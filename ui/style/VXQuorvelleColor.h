#pragma once

#include "VXColor.h"

#include <QList>

// The NSColor(Quorvelle) category: the flat-design palette. Every call makes a new value;
// nothing is cached.
namespace QuorvelleColor {

VXColor systemScanCriticalColor();
VXColor systemScanSeriousColor();
VXColor systemScanExcellentColor();
VXColor systemScanCriticalBackgroundColor();
VXColor systemScanSeriousBackgroundColor();
VXColor systemScanExcellentBackgroundColor();
VXColor tableAlternateRowBackgroundColor();
VXColor levelIndicatorRedGradienColor();
VXColor levelIndicatorYellowGradienColor();
VXColor levelIndicatorGreenGradienColor();
VXColor hyperlinkButtonTextColor();
VXColor quorvelleBlueColor();
VXColor quorvelleDarkBlueColor();
VXColor quorvelleLightBlueColor();
VXColor quorvelleRedColor();
VXColor quorvelleOrangeColor();
VXColor quorvelleGreenColor();
VXColor quorvelleGrayColor();
VXColor quorvelleDarkGrayColor();
VXColor quorvelleTextGrayColor();
VXColor quorvelleLightGrayDisabledControlColor();
VXColor quorvelleGrayDisabledControlColor();
VXColor quorvelleBlueDisabledControlColor();
VXColor facebookColor();
VXColor facebookDarkColor();
VXColor serviceWindowBackgroundColor();
VXColor infoMessageSuccessBorderColor();
VXColor infoMessageSuccessFillColor();
VXColor infoMessageSuccessTextColor();
VXColor infoMessageErrorBorderColor();
VXColor infoMessageErrorFillColor();
VXColor infoMessageErrorTextColor();

// The alternating-row pair that item views get in this process: white, then
// tableAlternateRowBackgroundColor(). A hook installed when the application object is
// created gives every QAbstractItemView these two as its Base and AlternateBase.
QList<VXColor> controlAlternatingRowBackgroundColors();
// The desktop's own pair (Base, AlternateBase of the application palette for item views),
// which the hook leaves untouched.
QList<VXColor> controlAlternatingRowBackgroundColorsOriginal();

// Whether the start-up hook has run in this process (it runs once, when the
// QCoreApplication is constructed, and is never undone).
bool isAlternatingRowExchangeInstalled();

} // namespace QuorvelleColor
