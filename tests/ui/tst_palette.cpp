#include "PixelProbe.h"
#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

using Space = VXColor::ColorSpace;
Q_DECLARE_METATYPE(VXColor::ColorSpace)
using ColorFn = VXColor (*)();
Q_DECLARE_METATYPE(ColorFn)

class TestPalette : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namedColors_data()
    {
        QTest::addColumn<ColorFn>("color");
        QTest::addColumn<Space>("space");
        QTest::addColumn<QList<double>>("components");
        using namespace QuorvelleColor;
        const auto rgb = Space::CalibratedRGB;
        const auto grey = Space::CalibratedWhite;
        const auto b = [](int v) { return v / 255.0; };
        // The components are compared exactly: a colour that went through 8 or 16 bits fails.
        QTest::newRow("critical") << &systemScanCriticalColor << rgb << QList<double>{1, 0, 0, 1};
        QTest::newRow("serious") << &systemScanSeriousColor << rgb << QList<double>{1, 0.5, 0, 1};
        QTest::newRow("excellent")
            << &systemScanExcellentColor << rgb << QList<double>{0.36, 0.7, 0.0, 1};
        QTest::newRow("criticalBg")
            << &systemScanCriticalBackgroundColor << rgb << QList<double>{1, 0.87, 0.87, 1};
        QTest::newRow("seriousBg")
            << &systemScanSeriousBackgroundColor << rgb << QList<double>{1, 0.91, 0.81, 1};
        QTest::newRow("excellentBg")
            << &systemScanExcellentBackgroundColor << rgb << QList<double>{0.93, 1, 0.84, 1};
        QTest::newRow("tableAlt") << &tableAlternateRowBackgroundColor << rgb
                                  << QList<double>{0.94, 0.96, 0.98, 1};
        QTest::newRow("levelRed") << &levelIndicatorRedGradienColor << rgb
                                  << QList<double>{0.95, 0.03, 0.055, 1};
        QTest::newRow("levelYellow")
            << &levelIndicatorYellowGradienColor << rgb << QList<double>{1, 0.78, 0, 1};
        QTest::newRow("levelGreen")
            << &levelIndicatorGreenGradienColor << rgb << QList<double>{0.313, 1, 0, 1};
        QTest::newRow("hyperlink")
            << &hyperlinkButtonTextColor << rgb << QList<double>{0.176471, 0.537255, 0.996078, 1};
        QTest::newRow("blue") << &quorvelleBlueColor << rgb
                              << QList<double>{0.09019, 0.47058, 0.82745, 1};
        QTest::newRow("darkBlue") << &quorvelleDarkBlueColor << rgb
                                  << QList<double>{b(11), b(95), b(176), 1};
        QTest::newRow("lightBlue")
            << &quorvelleLightBlueColor << rgb << QList<double>{0.09019, 0.47058, 0.82745, 0.5};
        QTest::newRow("red") << &quorvelleRedColor << rgb << QList<double>{b(233), b(11), b(33), 1};
        QTest::newRow("orange") << &quorvelleOrangeColor << rgb
                                << QList<double>{b(254), b(139), b(8), 1};
        QTest::newRow("green") << &quorvelleGreenColor << rgb
                               << QList<double>{b(25), b(185), b(5), 1};
        QTest::newRow("gray") << &quorvelleGrayColor << grey << QList<double>{0.8, 1};
        QTest::newRow("darkGray") << &quorvelleDarkGrayColor << grey << QList<double>{0.0, 0.7};
        QTest::newRow("textGray") << &quorvelleTextGrayColor << rgb
                                  << QList<double>{0.5, 0.5, 0.5, 1};
        QTest::newRow("lightGrayDisabled")
            << &quorvelleLightGrayDisabledControlColor << grey << QList<double>{b(241), 1};
        QTest::newRow("grayDisabled") << &quorvelleGrayDisabledControlColor << rgb
                                      << QList<double>{b(209), b(210), b(214), 1};
        QTest::newRow("blueDisabled") << &quorvelleBlueDisabledControlColor << rgb
                                      << QList<double>{b(133), b(191), b(229), 1};
        QTest::newRow("facebook") << &facebookColor << rgb
                                  << QList<double>{b(44), b(67), b(137), 1};
        QTest::newRow("facebookDark")
            << &facebookDarkColor << rgb << QList<double>{b(38), b(55), b(105), 1};
        QTest::newRow("serviceWindow")
            << &serviceWindowBackgroundColor << rgb << QList<double>{b(230), b(234), b(236), 1};
        QTest::newRow("successBorder")
            << &infoMessageSuccessBorderColor << rgb << QList<double>{b(121), b(231), b(121), 1};
        QTest::newRow("successFill")
            << &infoMessageSuccessFillColor << rgb << QList<double>{b(174), b(246), b(174), 1};
        QTest::newRow("successText")
            << &infoMessageSuccessTextColor << rgb << QList<double>{b(57), b(174), b(57), 1};
        QTest::newRow("errorBorder")
            << &infoMessageErrorBorderColor << rgb << QList<double>{1, b(175), b(177), 1};
        QTest::newRow("errorFill")
            << &infoMessageErrorFillColor << rgb << QList<double>{1, b(229), b(230), 1};
        QTest::newRow("errorText")
            << &infoMessageErrorTextColor << rgb << QList<double>{1, b(85), b(80), 1};
    }

    void namedColors()
    {
        QFETCH(ColorFn, color);
        QFETCH(Space, space);
        QFETCH(QList<double>, components);
        const VXColor c = color();
        QCOMPARE(c.colorSpace(), space);
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

    void newCGColor_data()
    {
        QTest::addColumn<VXColor>("color");
        QTest::addColumn<QColor>("expected");
        // Qt's own float conversion is the oracle; a grey must come out as a grey.
        QTest::newRow("grey") << QuorvelleColor::quorvelleGrayColor()
                              << QColor::fromRgbF(0.8f, 0.8f, 0.8f, 1.0f);
        QTest::newRow("greyAlpha")
            << QuorvelleColor::quorvelleDarkGrayColor() << QColor::fromRgbF(0, 0, 0, 0.7f);
        QTest::newRow("rgb") << QuorvelleColor::quorvelleBlueColor()
                             << QColor::fromRgbF(0.09019f, 0.47058f, 0.82745f, 1.0f);
        QTest::newRow("outOfRange") << VXColor::colorWithCalibratedRed(1.5, -0.2, 0.5, 2.0)
                                    << QColor::fromRgbF(1, 0, 0.5f, 1);
    }

    void newCGColor()
    {
        QFETCH(VXColor, color);
        QFETCH(QColor, expected);
        const QColor converted = VXColorConvertion::newCGColor(color);
        QVERIFY(converted.isValid());
        QCOMPARE(converted.rgba64(), expected.rgba64());
    }

    void alternatingRowsAfterStartUpExchange()
    {
        QVERIFY(QuorvelleColor::isAlternatingRowExchangeInstalled());
        const QList<VXColor> ours = QuorvelleColor::controlAlternatingRowBackgroundColors();
        QCOMPARE(ours.size(), 2);
        QCOMPARE(ours.at(0), VXColor::whiteColor());
        QCOMPARE(ours.at(1), QuorvelleColor::tableAlternateRowBackgroundColor());

        QStandardItemModel model(4, 1);
        QTableView view;
        view.setModel(&model);
        view.setAlternatingRowColors(true);
        view.setShowGrid(false);
        view.resize(200, 150);
        const QImage image = view.grab().toImage();
        // A point inside row 0 and row 1 of the viewport.
        const QPoint inViewport = view.viewport()->mapTo(&view, QPoint(40, 0));
        const int y0 = inViewport.y() + view.rowViewportPosition(0) + view.rowHeight(0) / 2;
        const int y1 = inViewport.y() + view.rowViewportPosition(1) + view.rowHeight(1) / 2;
        QV_COMPARE_COLOR(PixelProbe::at(image, inViewport.x(), y0), QColor(Qt::white), 1);
        QV_COMPARE_COLOR(
            PixelProbe::at(image, inViewport.x(), y1),
            VXColorConvertion::newCGColor(QuorvelleColor::tableAlternateRowBackgroundColor()), 1);

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
        const QImage image = view.grab().toImage();
        const QPoint inViewport = view.viewport()->mapTo(&view, QPoint(40, 0));
        // Rows 2 and 3: row 0 holds the current cell, which the style marks.
        const int y2 = inViewport.y() + view.rowViewportPosition(2) + view.rowHeight(2) / 2;
        const int y3 = inViewport.y() + view.rowViewportPosition(3) + view.rowHeight(3) / 2;
        QV_COMPARE_COLOR(PixelProbe::at(image, inViewport.x(), y2), QColor(Qt::white), 1);
        QV_COMPARE_COLOR(PixelProbe::at(image, inViewport.x(), y3), alternate, 1);
    }
};

QTEST_MAIN(TestPalette)
#include "tst_palette.moc"
