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

    // Linear from the start colour to the finish colour along the angle, sampled at pixel
    // centres: 270 starts on top, 90 at the bottom, 0 on the left, 180 on the right.
    void gradientDirection()
    {
        for (auto [angle, vertical, startFirst] : {std::tuple{270.0, true, true},
                                                   {90.0, true, false},
                                                   {0.0, false, true},
                                                   {180.0, false, false}}) {
            auto view = bareView(40, 40);
            view->setStartGradientColor(red);
            view->setFinishGradientColor(blue);
            view->setGradientAngle(angle);
            const QImage image = draw(*view);
            for (int i : {0, 10, 20, 39}) {
                const double t = (i + 0.5) / 40.0;
                QV_COMPARE_COLOR(vertical ? at(image, 20, i) : at(image, i, 20),
                                 startFirst ? mix(Qt::red, Qt::blue, t) : mix(Qt::blue, Qt::red, t),
                                 4);
            }
        }
    }

    // Equal colours fill evenly, no start colour fills nothing; rounded corners stay clear
    // and the edges between them filled.
    void solidMissingAndRounded()
    {
        auto view = bareView(40, 20);
        view->setStartGradientColor(green);
        view->setFinishGradientColor(VXColor::colorWithCalibratedRed(0, 1, 0, 1));
        QImage image = draw(*view);
        for (QPoint p : {QPoint(0, 0), QPoint(39, 19), QPoint(15, 6)})
            QV_COMPARE_COLOR(at(image, p.x(), p.y()), QColor(Qt::green), 0);
        view->setCornerRadius(8);
        image = draw(*view);
        QVERIFY(at(image, 0, 0).alpha() == 0 && at(image, 39, 19).alpha() == 0);
        QVERIFY(at(image, 20, 0).alpha() == 255 && at(image, 0, 10).alpha() == 255);
        view->setStartGradientColor(std::nullopt);
        QCOMPARE(at(draw(*view), 15, 6).alpha(), 0);
    }

    // At two pixels per point, the inner half of each 1-point edge line is exactly the
    // outermost pixel row (the outer half is clipped away); at one pixel per point it covers
    // half of the edge pixel. The bottom line dashes as the top one unless it has its own.
    void edgeLines()
    {
        const QList<double> solid;
        // top line drawn, top dash, bottom dash; per point along the top edge T line, . fill;
        // along the bottom edge B line
        for (auto [topLine, topDash, bottomDash, topRow, bottomRow] :
             {std::tuple{true, solid, solid, "TTTTTTTTTTTT", "BBBBBBBBBBBB"},
              {false, solid, solid, "............", "BBBBBBBBBBBB"},
              {true, QList<double>{2, 2}, solid, "TT..TT..TT..", "BB..BB..BB.."},
              {true, QList<double>{2, 2}, QList<double>{3, 1}, "TT..TT..TT..", "BBB.BBB.BBB."},
              {true, QList<double>{3}, solid, "TTT...TTT...", "BBB...BBB..."}}) {
            auto view = bareView(12, 6);
            view->setStartGradientColor(white);
            view->setFinishGradientColor(white);
            view->setTopLineColor(topLine ? std::optional(green) : std::nullopt);
            view->setBottomLineColor(black);
            view->setTopLineDash(topDash.isEmpty() ? nullptr : topDash.constData(), topDash.size());
            view->setBottomLineDash(bottomDash.isEmpty() ? nullptr : bottomDash.constData(),
                                    bottomDash.size());
            const QImage image = draw(*view, 2.0);
            const auto row = [&](int y, QColor line, QChar mark) {
                QString out;
                for (int x = 0; x < 12; ++x)
                    out += near(at(image, 2 * x + 1, y), line, 8)        ? mark
                           : near(at(image, 2 * x + 1, y), Qt::white, 8) ? u'.'
                                                                         : u'?';
                return out;
            };
            QCOMPARE(row(0, Qt::green, u'T'), QLatin1String(topRow));
            QCOMPARE(row(11, Qt::black, u'B'), QLatin1String(bottomRow));
            QCOMPARE(row(1, Qt::green, u'T') + row(10, Qt::black, u'B'), QString(24, u'.'));
            if (topLine && topDash.isEmpty()) {
                const QImage single = draw(*view, 1.0);
                QV_COMPARE_COLOR(at(single, 6, 0), mix(Qt::white, Qt::green, 0.5), 3);
                QV_COMPARE_COLOR(at(single, 6, 5), mix(Qt::white, Qt::black, 0.5), 3);
            }
        }
    }

    void roundedRectInsideBounds()
    {
        const VXBezierPath path =
            VXBezierPathQuorvelle::bezierPathWithRoundedRectInsideBounds({5, 5, 30, 20}, 4, 4, 2);
        QCOMPARE(path.bounds(), QRectF(6, 6, 28, 18));                 // 1 point in on each side
        QCOMPARE(path.elementAtIndex(0).points[0], QPointF(6 + 3, 6)); // radius 3
        QCOMPARE(path.elementAtIndex(2).points[2], QPointF(34, 6 + 3));

        // The stroke, 2 wide, stays inside the bounds and reaches their edge.
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
        // QPainterPath's equality compares the element count too: no second close.
        QCOMPARE(*VXBezierPathConversion::newCGPath(closedThenMove), expected);
    }
};

QTEST_MAIN(TestGradientView)
#include "tst_gradientview.moc"
