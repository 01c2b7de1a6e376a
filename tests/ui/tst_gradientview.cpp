#include "PixelProbe.h"
#include "VXBezierPathConversion.h"
#include "VXBezierPathQuorvelle.h"
#include "VXColorConvertion.h"
#include "VXGradientView.h"

#include <QTest>

using namespace PixelProbe;

namespace {
const VXColor red = VXColor::colorWithCalibratedRed(1, 0, 0, 1);
const VXColor blue = VXColor::colorWithCalibratedRed(0, 0, 1, 1);
const VXColor green = VXColor::colorWithCalibratedRed(0, 1, 0, 1);
const VXColor white = VXColor::whiteColor();
const VXColor black = VXColor::blackColor();

// Through the widget's own paint event, without a window background.
QImage draw(VXGradientView &view, double ratio = 1.0)
{
    return render(
        view.size(), [&](QPainter &p) { view.render(&p, {}, {}, {}); }, ratio);
}

QColor mix(const QColor &a, const QColor &b, double t)
{
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * t),
                            float(a.greenF() + (b.greenF() - a.greenF()) * t),
                            float(a.blueF() + (b.blueF() - a.blueF()) * t),
                            float(a.alphaF() + (b.alphaF() - a.alphaF()) * t));
}

// A view of w × h points with no edge lines.
std::unique_ptr<VXGradientView> bareView(int w, int h)
{
    auto view = std::make_unique<VXGradientView>(QRect(0, 0, w, h));
    view->setTopLineColor(std::nullopt);
    view->setBottomLineColor(std::nullopt);
    return view;
}
} // namespace

class TestGradientView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults()
    {
        VXGradientView view(QRect(3, 4, 50, 20));
        QCOMPARE(view.geometry(), QRect(3, 4, 50, 20));
        QCOMPARE(view.startGradientColor(), std::optional(VXColor::controlHighlightColor()));
        QCOMPARE(view.finishGradientColor(), std::optional(VXColor::controlShadowColor()));
        QCOMPARE(view.topLineColor(), std::optional(VXColor::whiteColor()));
        QCOMPARE(view.bottomLineColor(), std::optional(VXColor::disabledControlTextColor()));
        QCOMPARE(view.gradientAngle(), 270.0);
        QCOMPARE(view.cornerRadius(), 0.0);
    }

    void gradientDirection_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<bool>("startFirst"); // start colour at the top (vertical) or left
        QTest::newRow("270: start on top") << 270.0 << true << true;
        QTest::newRow("90: start at the bottom") << 90.0 << true << false;
        QTest::newRow("0: start on the left") << 0.0 << false << true;
        QTest::newRow("180: start on the right") << 180.0 << false << false;
    }

    void gradientDirection()
    {
        QFETCH(double, angle);
        QFETCH(bool, vertical);
        QFETCH(bool, startFirst);
        auto view = bareView(40, 40);
        view->setStartGradientColor(red);
        view->setFinishGradientColor(blue);
        view->setGradientAngle(angle);
        const QImage image = draw(*view);
        const QColor start = VXColorConvertion::newCGColor(red),
                     finish = VXColorConvertion::newCGColor(blue);
        // Linear interpolation along the axis, sampled at pixel centres.
        for (int i : {0, 10, 20, 39}) {
            const double t = (i + 0.5) / 40.0;
            const QColor expected = startFirst ? mix(start, finish, t) : mix(finish, start, t);
            QV_COMPARE_COLOR(vertical ? at(image, 20, i) : at(image, i, 20), expected, 4);
        }
    }

    void solidAndMissingFill()
    {
        auto view = bareView(30, 12);
        view->setStartGradientColor(green);
        view->setFinishGradientColor(VXColor::colorWithCalibratedRed(0, 1, 0, 1));
        QImage image = draw(*view);
        for (QPoint p : {QPoint(0, 0), QPoint(29, 11), QPoint(15, 6)})
            QV_COMPARE_COLOR(at(image, p.x(), p.y()), QColor(Qt::green), 0);

        view->setStartGradientColor(std::nullopt);
        image = draw(*view);
        QCOMPARE(at(image, 15, 6).alpha(), 0);
    }

    void roundedCorners()
    {
        auto view = bareView(40, 20);
        view->setStartGradientColor(black);
        view->setFinishGradientColor(black);
        view->setCornerRadius(8);
        const QImage image = draw(*view);
        QCOMPARE(at(image, 0, 0).alpha(), 0);
        QCOMPARE(at(image, 39, 19).alpha(), 0);
        QCOMPARE(at(image, 20, 0).alpha(), 255); // edges between the corners stay filled
        QCOMPARE(at(image, 0, 10).alpha(), 255);
    }

    void edgeLines_data()
    {
        QTest::addColumn<bool>("topLine");
        QTest::addColumn<QList<double>>("topDash");
        QTest::addColumn<QList<double>>("bottomDash");
        QTest::addColumn<QString>("topRow");    // per point along the top edge: T line, . fill
        QTest::addColumn<QString>("bottomRow"); // B line, . fill
        QTest::newRow("solid lines")
            << true << QList<double>() << QList<double>() << QStringLiteral("TTTTTTTTTTTT")
            << QStringLiteral("BBBBBBBBBBBB");
        QTest::newRow("no top line")
            << false << QList<double>() << QList<double>() << QStringLiteral("............")
            << QStringLiteral("BBBBBBBBBBBB");
        QTest::newRow("top dash shared")
            << true << QList<double>{2, 2} << QList<double>() << QStringLiteral("TT..TT..TT..")
            << QStringLiteral("BB..BB..BB..");
        QTest::newRow("own bottom dash")
            << true << QList<double>{2, 2} << QList<double>{3, 1} << QStringLiteral("TT..TT..TT..")
            << QStringLiteral("BBB.BBB.BBB.");
        QTest::newRow("odd dash repeats")
            << true << QList<double>{3} << QList<double>() << QStringLiteral("TTT...TTT...")
            << QStringLiteral("BBB...BBB...");
    }

    void edgeLines()
    {
        QFETCH(bool, topLine);
        QFETCH(QList<double>, topDash);
        QFETCH(QList<double>, bottomDash);
        QFETCH(QString, topRow);
        QFETCH(QString, bottomRow);
        auto view = bareView(12, 6);
        view->setStartGradientColor(white);
        view->setFinishGradientColor(white);
        view->setTopLineColor(topLine ? std::optional(green) : std::nullopt);
        view->setBottomLineColor(black);
        view->setTopLineDash(topDash.isEmpty() ? nullptr : topDash.constData(), topDash.size());
        view->setBottomLineDash(bottomDash.isEmpty() ? nullptr : bottomDash.constData(),
                                bottomDash.size());
        // At two pixels per point, the inner half of each 1-point edge line is exactly the
        // outermost pixel row; the outer half is clipped away.
        const QImage image = draw(*view, 2.0);
        const auto row = [&](int y, QColor line, QChar mark) {
            QString out;
            for (int x = 0; x < 12; ++x)
                out += near(at(image, 2 * x + 1, y), line, 8)        ? mark
                       : near(at(image, 2 * x + 1, y), Qt::white, 8) ? u'.'
                                                                     : u'?';
            return out;
        };
        QCOMPARE(row(0, Qt::green, u'T'), topRow);
        QCOMPARE(row(11, Qt::black, u'B'), bottomRow);
        QCOMPARE(row(1, Qt::green, u'T'), QStringLiteral("............"));
        QCOMPARE(row(10, Qt::black, u'B'), QStringLiteral("............"));

        // At one pixel per point the same half line covers half of the edge pixel.
        if (topLine && topDash.isEmpty()) {
            const QImage single = draw(*view, 1.0);
            QV_COMPARE_COLOR(at(single, 6, 0), mix(Qt::white, Qt::green, 0.5), 3);
            QV_COMPARE_COLOR(at(single, 6, 5), mix(Qt::white, Qt::black, 0.5), 3);
        }
    }

    void roundedRectInsideBounds()
    {
        const VXBezierPath path =
            VXBezierPathQuorvelle::bezierPathWithRoundedRectInsideBounds({5, 5, 30, 20}, 4, 4, 2);
        QCOMPARE(path.lineWidth(), 2.0);
        QCOMPARE(path.bounds(), QRectF(6, 6, 28, 18));                 // 1 point in on each side
        QCOMPARE(path.elementAtIndex(0).points[0], QPointF(6 + 3, 6)); // radius 3
        QCOMPARE(path.elementAtIndex(2).points[2], QPointF(34, 6 + 3));

        // The stroke stays inside the bounds and reaches their edge.
        const QImage image = render({40, 30}, [&](QPainter &p) {
            p.setBrush(Qt::red); // a stroke never fills
            path.stroke(p, black);
        });
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                if (!QRect(5, 5, 30, 20).contains(x, y))
                    QVERIFY2(at(image, x, y).alpha() == 0,
                             qPrintable(QStringLiteral("ink at %1,%2").arg(x).arg(y)));
        QCOMPARE(at(image, 20, 5).alpha(), 255);
        QCOMPARE(at(image, 20, 6).alpha(), 255);
        QCOMPARE(at(image, 20, 7).alpha(), 0);
    }

    // Figures as Qt builds them: a rectangle (also a corner radius of zero), a line that
    // starts a figure at its own point, the current point after a curve and a close; an
    // open last figure comes back closed, a closed one is not closed twice.
    void paths()
    {
        const QRectF rect(2, 3, 10, 6);
        QPainterPath box;
        box.addRect(rect);
        QCOMPARE(VXBezierPath::bezierPathWithRect(rect).toQPainterPath(), box);
        QCOMPARE(VXBezierPath::bezierPathWithRoundedRect(rect, 0, 2).toQPainterPath(), box);

        VXBezierPath open;
        open.lineToPoint({2, 3});
        open.lineToPoint({10, 3});
        open.curveToPoint({10, 10}, {12, 4}, {12, 8});
        QCOMPARE(open.currentPoint(), QPointF(10, 10));
        QPainterPath expected(QPointF(2, 3));
        expected.lineTo(2, 3);
        expected.lineTo(10, 3);
        expected.cubicTo(12, 4, 12, 8, 10, 10);
        QCOMPARE(open.toQPainterPath(), expected); // drawn as it is
        expected.closeSubpath();
        QCOMPARE(*VXBezierPathConversion::newCGPath(open), expected);
        QVERIFY(!VXBezierPathConversion::newCGPath(VXBezierPath()));

        VXBezierPath closedThenMove = open;
        closedThenMove.closePath();
        QCOMPARE(closedThenMove.currentPoint(), QPointF(2, 3));
        closedThenMove.moveToPoint({20, 20});
        expected.moveTo(20, 20);
        QCOMPARE(*VXBezierPathConversion::newCGPath(closedThenMove), expected);
        QCOMPARE(VXBezierPathConversion::newCGPath(closedThenMove)->elementCount(),
                 expected.elementCount());
    }
};

QTEST_MAIN(TestGradientView)
#include "tst_gradientview.moc"
