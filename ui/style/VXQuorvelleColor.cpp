#include "VXQuorvelleColor.h"

#include "VXColorConvertion.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QPalette>
#include <QSet>

namespace QuorvelleColor {

namespace {
VXColor rgb(double r, double g, double b)
{
    return VXColor::colorWithCalibratedRed(r, g, b, 1.0);
}
} // namespace

VXColor systemScanCriticalColor()
{
    return VXColor::redColor();
}
VXColor systemScanSeriousColor()
{
    return VXColor::orangeColor();
}
VXColor systemScanExcellentColor()
{
    return rgb(0.36, 0.7, 0.0);
}
VXColor systemScanCriticalBackgroundColor()
{
    return rgb(1.0, 0.87, 0.87);
}
VXColor systemScanSeriousBackgroundColor()
{
    return rgb(1.0, 0.91, 0.81);
}
VXColor systemScanExcellentBackgroundColor()
{
    return rgb(0.93, 1.0, 0.84);
}
VXColor tableAlternateRowBackgroundColor()
{
    return rgb(0.94, 0.96, 0.98);
}
VXColor levelIndicatorRedGradienColor()
{
    return rgb(0.95, 0.03, 0.055);
}
VXColor levelIndicatorYellowGradienColor()
{
    return rgb(1.0, 0.78, 0.0);
}
VXColor levelIndicatorGreenGradienColor()
{
    return rgb(0.313, 1.0, 0.0);
}
VXColor hyperlinkButtonTextColor()
{
    return rgb(0.176471, 0.537255, 0.996078);
}
VXColor quorvelleBlueColor()
{
    return rgb(0.09019, 0.47058, 0.82745);
}
VXColor quorvelleDarkBlueColor()
{
    return rgb(11 / 255.0, 95 / 255.0, 176 / 255.0);
}
VXColor quorvelleLightBlueColor()
{
    return quorvelleBlueColor().colorWithAlphaComponent(0.5);
}
VXColor quorvelleRedColor()
{
    return rgb(233 / 255.0, 11 / 255.0, 33 / 255.0);
}
VXColor quorvelleOrangeColor()
{
    return rgb(254 / 255.0, 139 / 255.0, 8 / 255.0);
}
VXColor quorvelleGreenColor()
{
    return rgb(25 / 255.0, 185 / 255.0, 5 / 255.0);
}
VXColor quorvelleGrayColor()
{
    return VXColor::colorWithCalibratedWhite(0.8, 1.0);
}
VXColor quorvelleDarkGrayColor()
{
    return VXColor::colorWithCalibratedWhite(0.0, 0.7);
}
VXColor quorvelleTextGrayColor()
{
    return rgb(0.5, 0.5, 0.5);
}
VXColor quorvelleLightGrayDisabledControlColor()
{
    return VXColor::colorWithCalibratedWhite(241 / 255.0, 1.0);
}
VXColor quorvelleGrayDisabledControlColor()
{
    return rgb(209 / 255.0, 210 / 255.0, 214 / 255.0);
}
VXColor quorvelleBlueDisabledControlColor()
{
    return rgb(133 / 255.0, 191 / 255.0, 229 / 255.0);
}
VXColor facebookColor()
{
    return rgb(44 / 255.0, 67 / 255.0, 137 / 255.0);
}
VXColor facebookDarkColor()
{
    return rgb(38 / 255.0, 55 / 255.0, 105 / 255.0);
}
VXColor serviceWindowBackgroundColor()
{
    return rgb(230 / 255.0, 234 / 255.0, 236 / 255.0);
}
VXColor infoMessageSuccessBorderColor()
{
    return rgb(121 / 255.0, 231 / 255.0, 121 / 255.0);
}
VXColor infoMessageSuccessFillColor()
{
    return rgb(174 / 255.0, 246 / 255.0, 174 / 255.0);
}
VXColor infoMessageSuccessTextColor()
{
    return rgb(57 / 255.0, 174 / 255.0, 57 / 255.0);
}
VXColor infoMessageErrorBorderColor()
{
    return rgb(1.0, 175 / 255.0, 177 / 255.0);
}
VXColor infoMessageErrorFillColor()
{
    return rgb(1.0, 229 / 255.0, 230 / 255.0);
}
VXColor infoMessageErrorTextColor()
{
    return rgb(1.0, 85 / 255.0, 80 / 255.0);
}

QList<VXColor> controlAlternatingRowBackgroundColors()
{
    return {VXColor::whiteColor(), tableAlternateRowBackgroundColor()};
}

QList<VXColor> controlAlternatingRowBackgroundColorsOriginal()
{
    // The hook changes item views' own palettes only, never the application's palette for
    // the class, so the desktop's pair can always be read there.
    const QPalette palette = qobject_cast<QApplication *>(QCoreApplication::instance())
                                 ? QApplication::palette("QAbstractItemView")
                                 : QPalette();
    return {VXColor::colorWithQColor(palette.color(QPalette::Active, QPalette::Base)),
            VXColor::colorWithQColor(palette.color(QPalette::Active, QPalette::AlternateBase))};
}

namespace {

bool hookInstalled = false;

// Gives every item view that alternates its rows the kit's pair, once per view. Qt announces
// nothing when setAlternatingRowColors() is called; what it does is repaint the viewport, so
// besides Polish and Show (a view set up before it is shown) the viewport's Paint is the
// moment a view that turned alternation on later is seen. A paint costs a bool check of the
// view (and, for an alternating view, one hash look-up), never a palette write. The roles are set
// on the view's own palette, so a later change of the desktop theme does not take them back, and
// the application palette keeps the desktop's own pair for
// controlAlternatingRowBackgroundColorsOriginal(). Views that do not alternate never ask
// for the pair and keep the desktop's colours.
class AlternatingRowFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        QAbstractItemView *view = nullptr;
        switch (event->type()) {
        case QEvent::Polish:
        case QEvent::Show:
            view = qobject_cast<QAbstractItemView *>(watched);
            break;
        case QEvent::Paint:
            // Set before the view paints, so this very paint already shows the pair.
            view = qobject_cast<QAbstractItemView *>(watched->parent());
            if (view && view->viewport() != watched)
                view = nullptr;
            break;
        default:
            break;
        }
        if (view && view->alternatingRowColors() && !_applied.contains(view))
            apply(view);
        return false;
    }

private:
    void apply(QAbstractItemView *view)
    {
        _applied.insert(view);
        connect(view, &QObject::destroyed, this, [this, view] { _applied.remove(view); });
        const QList<VXColor> pair = controlAlternatingRowBackgroundColors();
        const QColor base = VXColorConvertion::newCGColor(pair.at(0));
        const QColor alternate = VXColorConvertion::newCGColor(pair.at(1));
        QPalette palette = view->palette();
        // The pair is light whatever the desktop theme; under a dark theme the view's text
        // would be light on white, so it gets the dark text of a light palette.
        const bool darkText = palette.color(QPalette::Active, QPalette::Text).lightnessF() < 0.5;
        for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            palette.setColor(group, QPalette::Base, base);
            palette.setColor(group, QPalette::AlternateBase, alternate);
            if (!darkText && group != QPalette::Disabled)
                palette.setColor(group, QPalette::Text, Qt::black);
        }
        view->setPalette(palette);
    }

    QSet<const QObject *> _applied;
};

void installHooks()
{
    if (hookInstalled)
        return;
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return;
    hookInstalled = true;
    app->installEventFilter(new AlternatingRowFilter(app));
}

} // namespace

bool isAlternatingRowExchangeInstalled()
{
    return hookInstalled;
}

} // namespace QuorvelleColor

namespace {
// Registered when the library is loaded; Qt runs it when the application object is created
// (or at once, for a library loaded later).
void installAlternatingRowHook()
{
    QuorvelleColor::installHooks();
}
} // namespace
Q_COREAPP_STARTUP_FUNCTION(installAlternatingRowHook)

// Referenced by QuorvelleWidgetsLoad.cpp, which every program linking the library compiles,
// so that a linker with --as-needed keeps the library and its load-time hooks.
extern "C" QV_WIDGETS_EXPORT void qv_widgets_load_anchor() {}
