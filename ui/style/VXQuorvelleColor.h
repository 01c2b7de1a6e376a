#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>

// The NSColor(Quorvelle) category: the flat-design palette. Every call makes a new value;
// nothing is cached.
namespace QuorvelleColor {

QV_WIDGETS_EXPORT VXColor systemScanCriticalColor();
QV_WIDGETS_EXPORT VXColor systemScanSeriousColor();
QV_WIDGETS_EXPORT VXColor systemScanExcellentColor();
QV_WIDGETS_EXPORT VXColor systemScanCriticalBackgroundColor();
QV_WIDGETS_EXPORT VXColor systemScanSeriousBackgroundColor();
QV_WIDGETS_EXPORT VXColor systemScanExcellentBackgroundColor();
QV_WIDGETS_EXPORT VXColor tableAlternateRowBackgroundColor();
QV_WIDGETS_EXPORT VXColor levelIndicatorRedGradienColor();
QV_WIDGETS_EXPORT VXColor levelIndicatorYellowGradienColor();
QV_WIDGETS_EXPORT VXColor levelIndicatorGreenGradienColor();
QV_WIDGETS_EXPORT VXColor hyperlinkButtonTextColor();
QV_WIDGETS_EXPORT VXColor quorvelleBlueColor();
QV_WIDGETS_EXPORT VXColor quorvelleDarkBlueColor();
QV_WIDGETS_EXPORT VXColor quorvelleLightBlueColor();
QV_WIDGETS_EXPORT VXColor quorvelleRedColor();
QV_WIDGETS_EXPORT VXColor quorvelleOrangeColor();
QV_WIDGETS_EXPORT VXColor quorvelleGreenColor();
QV_WIDGETS_EXPORT VXColor quorvelleGrayColor();
QV_WIDGETS_EXPORT VXColor quorvelleDarkGrayColor();
QV_WIDGETS_EXPORT VXColor quorvelleTextGrayColor();
QV_WIDGETS_EXPORT VXColor quorvelleLightGrayDisabledControlColor();
QV_WIDGETS_EXPORT VXColor quorvelleGrayDisabledControlColor();
QV_WIDGETS_EXPORT VXColor quorvelleBlueDisabledControlColor();
QV_WIDGETS_EXPORT VXColor facebookColor();
QV_WIDGETS_EXPORT VXColor facebookDarkColor();
QV_WIDGETS_EXPORT VXColor serviceWindowBackgroundColor();
QV_WIDGETS_EXPORT VXColor infoMessageSuccessBorderColor();
QV_WIDGETS_EXPORT VXColor infoMessageSuccessFillColor();
QV_WIDGETS_EXPORT VXColor infoMessageSuccessTextColor();
QV_WIDGETS_EXPORT VXColor infoMessageErrorBorderColor();
QV_WIDGETS_EXPORT VXColor infoMessageErrorFillColor();
QV_WIDGETS_EXPORT VXColor infoMessageErrorTextColor();

// The alternating-row pair that item views get in this process: white, then
// tableAlternateRowBackgroundColor(). A hook installed when the application object is
// created gives every QAbstractItemView these two as its Base and AlternateBase.
QV_WIDGETS_EXPORT QList<VXColor> controlAlternatingRowBackgroundColors();
// The desktop's own pair (Base, AlternateBase of the application palette for item views),
// which the hook leaves untouched.
QV_WIDGETS_EXPORT QList<VXColor> controlAlternatingRowBackgroundColorsOriginal();

// Whether the start-up hook has run in this process (it runs once, when the
// QCoreApplication is constructed, and is never undone).
QV_WIDGETS_EXPORT bool isAlternatingRowExchangeInstalled();

} // namespace QuorvelleColor
