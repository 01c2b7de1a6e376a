#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>

/**
 * The kit's flat-design palette. Every function gives a new value (nothing is cached, so a
 * caller may change what it gets); components are exact, in RGB unless a grey is said.
 */
namespace QuorvelleColor {

/** Critical findings of a scan: pure red. */
QV_WIDGETS_EXPORT VXColor systemScanCriticalColor();
/** Serious findings of a scan: orange (RGB 1, 0.5, 0). */
QV_WIDGETS_EXPORT VXColor systemScanSeriousColor();
/** An excellent scan result: green (RGB 0.36, 0.7, 0). */
QV_WIDGETS_EXPORT VXColor systemScanExcellentColor();
/** The pale red behind critical findings (RGB 1, 0.87, 0.87). */
QV_WIDGETS_EXPORT VXColor systemScanCriticalBackgroundColor();
/** The pale orange behind serious findings (RGB 1, 0.91, 0.81). */
QV_WIDGETS_EXPORT VXColor systemScanSeriousBackgroundColor();
/** The pale green behind an excellent result (RGB 0.93, 1, 0.84). */
QV_WIDGETS_EXPORT VXColor systemScanExcellentBackgroundColor();
/** Every second row of the kit's item views: a very light blue-grey (RGB 0.94, 0.96, 0.98). */
QV_WIDGETS_EXPORT VXColor tableAlternateRowBackgroundColor();
/** The red of a level indicator (RGB 0.95, 0.03, 0.055). */
QV_WIDGETS_EXPORT VXColor levelIndicatorRedGradienColor();
/** The yellow of a level indicator (RGB 1, 0.78, 0). */
QV_WIDGETS_EXPORT VXColor levelIndicatorYellowGradienColor();
/** The green of a level indicator (RGB 0.313, 1, 0). */
QV_WIDGETS_EXPORT VXColor levelIndicatorGreenGradienColor();
/** The text of link-like buttons: a bright blue (RGB 45, 137, 254 of 255). */
QV_WIDGETS_EXPORT VXColor hyperlinkButtonTextColor();
/** The product's blue (RGB 0.09019, 0.47058, 0.82745): flat buttons, marks, focus rings. */
QV_WIDGETS_EXPORT VXColor quorvelleBlueColor();
/** The product's blue while pressed (RGB 11, 95, 176 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleDarkBlueColor();
/** The product's blue at half alpha. */
QV_WIDGETS_EXPORT VXColor quorvelleLightBlueColor();
/** Warnings and errors (RGB 233, 11, 33 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleRedColor();
/** Cautions (RGB 254, 139, 8 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleOrangeColor();
/** Success (RGB 25, 185, 5 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleGreenColor();
/** The edge of a flat check box or radio button (grey 0.8). */
QV_WIDGETS_EXPORT VXColor quorvelleGrayColor();
/** Black at 70 % alpha, for dark text on varying backgrounds. */
QV_WIDGETS_EXPORT VXColor quorvelleDarkGrayColor();
/** Secondary, placeholder and disabled text: middle grey (RGB 0.5, 0.5, 0.5). */
QV_WIDGETS_EXPORT VXColor quorvelleTextGrayColor();
/** The face of a disabled check box or radio button: near-white grey (241 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleLightGrayDisabledControlColor();
/** The edge of a disabled check box or radio button (RGB 209, 210, 214 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleGrayDisabledControlColor();
/** The tick or dot of a disabled check box or radio button (RGB 133, 191, 229 of 255). */
QV_WIDGETS_EXPORT VXColor quorvelleBlueDisabledControlColor();
/** A dark blue for sharing buttons (RGB 44, 67, 137 of 255). */
QV_WIDGETS_EXPORT VXColor facebookColor();
/** That dark blue while pressed (RGB 38, 55, 105 of 255). */
QV_WIDGETS_EXPORT VXColor facebookDarkColor();
/** The background of service windows: light blue-grey (RGB 230, 234, 236 of 255). */
QV_WIDGETS_EXPORT VXColor serviceWindowBackgroundColor();
/** The border of a success message (RGB 121, 231, 121 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageSuccessBorderColor();
/** The fill of a success message (RGB 174, 246, 174 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageSuccessFillColor();
/** The text of a success message (RGB 57, 174, 57 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageSuccessTextColor();
/** The border of an error message (RGB 255, 175, 177 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageErrorBorderColor();
/** The fill of an error message (RGB 255, 229, 230 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageErrorFillColor();
/** The text of an error message (RGB 255, 85, 80 of 255). */
QV_WIDGETS_EXPORT VXColor infoMessageErrorTextColor();

/**
 * The alternating-row pair the kit gives item views: white, then
 * tableAlternateRowBackgroundColor(). A hook that runs when the application object is
 * created gives every QAbstractItemView with alternating rows these two as its own palette's
 * Base and AlternateBase (and dark text, so rows stay readable under a dark theme); views
 * without alternating rows keep the desktop's colours.
 */
QV_WIDGETS_EXPORT QList<VXColor> controlAlternatingRowBackgroundColors();
/**
 * The desktop's own pair (Base, AlternateBase of the application palette for item views),
 * which the hook leaves untouched; a default palette's pair without a QApplication.
 */
QV_WIDGETS_EXPORT QList<VXColor> controlAlternatingRowBackgroundColorsOriginal();

/**
 * Whether the alternating-row hook has run in this process (it runs once, when the
 * QCoreApplication is constructed, and is never undone).
 */
QV_WIDGETS_EXPORT bool isAlternatingRowExchangeInstalled();

} // namespace QuorvelleColor
