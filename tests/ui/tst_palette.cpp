#include "PixelProbe.h"
#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"

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
        row("blue", &quorvelleBlueColor, {0.09019, 0.47058, 0.82745, 1});
        row("darkBlue", &quorvelleDarkBlueColor, {b(11), b(95), b(176), 1});
        row("red", &quorvelleRedColor, {b(233), b(11), b(33), 1});
        row("orange", &quorvelleOrangeColor, {b(254), b(139), b(8), 1});
        row("lightGrayDisabled", &quorvelleLightGrayDisabledControlColor, {b(241), 1});
        row("facebook", &facebookColor, {b(44), b(67), b(137), 1});
        row("facebookDark", &facebookDarkColor, {b(38), b(55), b(105), 1});
        row("serviceWindow", &serviceWindowBackgroundColor, {b(230), b(234), b(236), 1});
        row("successFill", &infoMessageSuccessFillColor, {b(174), b(246), b(174), 1});
        row("successText", &infoMessageSuccessTextColor, {b(57), b(174), b(57), 1});
        row("errorFill", &infoMessageErrorFillColor, {1, b(229), b(230), 1});
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
