#include "PixelProbe.h"
#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

using ColorFn = VXColor (*)();
Q_DECLARE_METATYPE(ColorFn)

namespace {
// The colour in the middle of a row of the view, 40 points into its viewport.
QColor rowColour(QTableView &view, int row)
{
    const QImage image = view.grab().toImage();
    const QPoint at = view.viewport()->mapTo(&view, QPoint(40, 0));
    return image.pixelColor(at.x(),
                            at.y() + view.rowViewportPosition(row) + view.rowHeight(row) / 2);
}
} // namespace

class TestPalette : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namedColors_data()
    {
        QTest::addColumn<ColorFn>("color");
        QTest::addColumn<QList<double>>("components"); // two: a grey and its alpha
        using namespace QuorvelleColor;
        const auto b = [](int v) { return v / 255.0; };
        const auto row = [](const char *name, ColorFn color, QList<double> components) {
            QTest::newRow(name) << color << components;
        };
        // The components are compared exactly: a colour that went through 8 or 16 bits fails.
        row("critical", &systemScanCriticalColor, {1, 0, 0, 1});
        row("serious", &systemScanSeriousColor, {1, 0.5, 0, 1});
        row("excellent", &systemScanExcellentColor, {0.36, 0.7, 0.0, 1});
        row("criticalBg", &systemScanCriticalBackgroundColor, {1, 0.87, 0.87, 1});
        row("seriousBg", &systemScanSeriousBackgroundColor, {1, 0.91, 0.81, 1});
        row("excellentBg", &systemScanExcellentBackgroundColor, {0.93, 1, 0.84, 1});
        row("tableAlt", &tableAlternateRowBackgroundColor, {0.94, 0.96, 0.98, 1});
        row("levelRed", &levelIndicatorRedGradienColor, {0.95, 0.03, 0.055, 1});
        row("levelYellow", &levelIndicatorYellowGradienColor, {1, 0.78, 0, 1});
        row("levelGreen", &levelIndicatorGreenGradienColor, {0.313, 1, 0, 1});
        row("hyperlink", &hyperlinkButtonTextColor, {0.176471, 0.537255, 0.996078, 1});
        row("blue", &quorvelleBlueColor, {0.09019, 0.47058, 0.82745, 1});
        row("darkBlue", &quorvelleDarkBlueColor, {b(11), b(95), b(176), 1});
        row("lightBlue", &quorvelleLightBlueColor, {0.09019, 0.47058, 0.82745, 0.5});
        row("red", &quorvelleRedColor, {b(233), b(11), b(33), 1});
        row("orange", &quorvelleOrangeColor, {b(254), b(139), b(8), 1});
        row("green", &quorvelleGreenColor, {b(25), b(185), b(5), 1});
        row("gray", &quorvelleGrayColor, {0.8, 1});
        row("darkGray", &quorvelleDarkGrayColor, {0.0, 0.7});
        row("textGray", &quorvelleTextGrayColor, {0.5, 0.5, 0.5, 1});
        row("lightGrayDisabled", &quorvelleLightGrayDisabledControlColor, {b(241), 1});
        row("grayDisabled", &quorvelleGrayDisabledControlColor, {b(209), b(210), b(214), 1});
        row("blueDisabled", &quorvelleBlueDisabledControlColor, {b(133), b(191), b(229), 1});
        row("facebook", &facebookColor, {b(44), b(67), b(137), 1});
        row("facebookDark", &facebookDarkColor, {b(38), b(55), b(105), 1});
        row("serviceWindow", &serviceWindowBackgroundColor, {b(230), b(234), b(236), 1});
        row("successBorder", &infoMessageSuccessBorderColor, {b(121), b(231), b(121), 1});
        row("successFill", &infoMessageSuccessFillColor, {b(174), b(246), b(174), 1});
        row("successText", &infoMessageSuccessTextColor, {b(57), b(174), b(57), 1});
        row("errorBorder", &infoMessageErrorBorderColor, {1, b(175), b(177), 1});
        row("errorFill", &infoMessageErrorFillColor, {1, b(229), b(230), 1});
        row("errorText", &infoMessageErrorTextColor, {1, b(85), b(80), 1});
    }

    void namedColors()
    {
        QFETCH(ColorFn, color);
        QFETCH(QList<double>, components);
        const VXColor c = color();
        QCOMPARE(c.colorSpace(), components.size() == 2 ? VXColor::ColorSpace::CalibratedWhite
                                                        : VXColor::ColorSpace::CalibratedRGB);
        QCOMPARE(c.componentList(), components);
        QCOMPARE(c.alphaComponent(), components.last());
        QVERIFY(c == color()); // a fresh, equal value on every call
    }

    void colorEquality()
    {
        // Same look, different space: not equal (the platform's colour equality).
        QVERIFY(VXColor::colorWithCalibratedWhite(1, 1) !=
                VXColor::colorWithCalibratedRed(1, 1, 1, 1));
        QVERIFY(VXColor::colorWithCalibratedRed(0.2, 0.3, 0.4, 1) !=
                VXColor::colorWithCalibratedRed(0.2, 0.3, 0.4000001, 1));
    }

    // Qt's own float conversion is the oracle; a grey must come out as a grey, components
    // out of range are clamped.
    void newCGColor()
    {
        using namespace QuorvelleColor;
        for (auto [color, expected] :
             {std::pair{quorvelleGrayColor(), QColor::fromRgbF(0.8f, 0.8f, 0.8f, 1.0f)},
              {quorvelleDarkGrayColor(), QColor::fromRgbF(0, 0, 0, 0.7f)},
              {quorvelleBlueColor(), QColor::fromRgbF(0.09019f, 0.47058f, 0.82745f, 1.0f)},
              {VXColor::colorWithCalibratedRed(1.5, -0.2, 0.5, 2.0),
               QColor::fromRgbF(1, 0, 0.5f, 1)}})
            QCOMPARE(VXColorConvertion::newCGColor(color).rgba64(), expected.rgba64());
    }

    void alternatingRowsAfterStartUpExchange()
    {
        QVERIFY(QuorvelleColor::isAlternatingRowExchangeInstalled());
        const QList<VXColor> ours = QuorvelleColor::controlAlternatingRowBackgroundColors();
        QCOMPARE(ours, (QList<VXColor>{VXColor::whiteColor(),
                                       QuorvelleColor::tableAlternateRowBackgroundColor()}));

        QStandardItemModel model(4, 1);
        QTableView view;
        view.setModel(&model);
        view.setAlternatingRowColors(true);
        view.setShowGrid(false);
        view.resize(200, 150);
        QV_COMPARE_COLOR(rowColour(view, 0), QColor(Qt::white), 1);
        QV_COMPARE_COLOR(rowColour(view, 1), VXColorConvertion::newCGColor(ours.at(1)), 1);

        // The desktop's own pair stays where it was: the application palette for item views,
        // which views that do not alternate keep.
        const QPalette desktop = QApplication::palette("QAbstractItemView");
        QTableView plain;
        plain.setModel(&model);
        plain.show();
        QCOMPARE(plain.palette().color(QPalette::AlternateBase),
                 desktop.color(QPalette::AlternateBase));
        QVERIFY(desktop.color(QPalette::AlternateBase) !=
                VXColorConvertion::newCGColor(ours.at(1)));
        const QList<VXColor> original =
            QuorvelleColor::controlAlternatingRowBackgroundColorsOriginal();
        QCOMPARE(original.size(), 2);
        QCOMPARE(VXColorConvertion::newCGColor(original.at(0)).rgba(),
                 desktop.color(QPalette::Base).rgba());
        QCOMPARE(VXColorConvertion::newCGColor(original.at(1)).rgba(),
                 desktop.color(QPalette::AlternateBase).rgba());
    }

    // A view shown with plain rows that turns alternation on afterwards (Qt sends no event
    // for that, only a repaint) gets the kit's pair by its own next paint.
    void alternatingRowsTurnedOnLater()
    {
        QStandardItemModel model(4, 1);
        QTableView view;
        view.setModel(&model);
        view.setShowGrid(false);
        view.resize(200, 150);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const QColor alternate =
            VXColorConvertion::newCGColor(QuorvelleColor::tableAlternateRowBackgroundColor());
        QVERIFY(view.palette().color(QPalette::AlternateBase) != alternate);

        view.setAlternatingRowColors(true);
        QTRY_COMPARE(view.palette().color(QPalette::AlternateBase), alternate);
        // Rows 2 and 3: row 0 holds the current cell, which the style marks.
        QV_COMPARE_COLOR(rowColour(view, 2), QColor(Qt::white), 1);
        QV_COMPARE_COLOR(rowColour(view, 3), alternate, 1);
    }
};

QTEST_MAIN(TestPalette)
#include "tst_palette.moc"
