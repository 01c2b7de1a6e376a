// The flat push buttons, check boxes, radio buttons and their matrix, probed at the places
// their geometry fixes.
#include "Button.h"
#include "Matrix.h"
#include "PixelProbe.h"
#include "VXColorConvertion.h"
#include "VXFlatBorderedButtonCell.h"
#include "VXFlatButtonCell.h"
#include "VXFlatCheckboxButtonCell.h"
#include "VXFlatRadioButtonCell.h"
#include "VXMatrix.h"
#include "VXQuorvelleColor.h"
#include "VXTrackingButton.h"

#include <QTest>
#include <QVBoxLayout>

using PixelProbe::at;
using PixelProbe::near;
using Quorvelle::Button;
using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;
using Quorvelle::Matrix;
using namespace QuorvelleColor;

namespace {

QColor q(const VXColor &color)
{
    return VXColorConvertion::newCGColor(color);
}

QImage drawCell(ButtonCell &cell, QSize size, QRectF frame = {})
{
    return PixelProbe::render(size, [&](QPainter &p) {
        cell.drawWithFrame(p, frame.isEmpty() ? QRectF(QPointF(), size) : frame, nullptr);
    });
}

const ButtonCellCoding fromDescription;
const QColor borderGrey(189, 195, 205);

} // namespace

class tst_FlatCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Pressed wins over disabled; a cell made in code has no colours and no fill.
    void flatFill()
    {
        const QColor none = Qt::transparent, dark = q(quorvelleDarkBlueColor());
        // decoded, enabled, highlighted, fill
        for (auto [decoded, enabled, highlighted, fill] :
             {std::tuple{true, true, false, q(quorvelleBlueColor())},
              {true, true, true, dark},
              {true, false, false, QColor(137, 187, 222)},
              {true, false, true, dark},
              {false, true, false, none}}) {
            auto cell = decoded ? std::make_unique<VXFlatButtonCell>(fromDescription)
                                : std::make_unique<VXFlatButtonCell>();
            cell->setEnabled(enabled);
            cell->setHighlighted(highlighted);
            const QImage image = drawCell(*cell, {100, 24});
            QVERIFY(near(at(image, 50, 3), fill));
            QVERIFY(near(at(image, 0, 0), Qt::transparent, 60)); // rounded corners
        }
    }

    // The one-point border lies inside the frame, made in code or loaded.
    void borderedStrokeInside()
    {
        VXFlatBorderedButtonCell made, decoded(fromDescription);
        for (VXFlatBorderedButtonCell *cell : {&made, &decoded}) {
            const QImage image = drawCell(*cell, {100, 44}, {10, 10, 80, 24});
            for (QPoint p : {QPoint(10, 22), QPoint(89, 22), QPoint(50, 10), QPoint(50, 33)})
                QVERIFY(near(at(image, p.x(), p.y()), borderGrey));
            for (QPoint p : {QPoint(9, 22), QPoint(90, 22), QPoint(50, 9)})
                QVERIFY(near(at(image, p.x(), p.y()), Qt::transparent));
            QVERIFY(near(at(image, 11, 22), Qt::white));
        }
    }

    // Hover shows the hover colours (equal to the normal ones by default); pressed fills with
    // the highlight colour but keeps the hover border.
    void borderedHoverAndPress()
    {
        const QColor white = Qt::white, red = Qt::red;
        // hover, pressed, hover border set to red, fill, border
        for (auto [hover, pressed, redHover, fill, border] :
             {std::tuple{true, false, false, white, borderGrey},
              {true, false, true, white, red},
              {false, false, true, white, borderGrey},
              {true, true, true, QColor(234, 236, 239), red}}) {
            VXTrackingButton button;
            button.resize(80, 24);
            auto cell = std::make_unique<VXFlatBorderedButtonCell>();
            if (redHover)
                cell->setHoverBorderColor(VXColor::redColor());
            button.setCell(std::move(cell));
            button.setHasHover(hover);
            button.setDown(pressed);
            const QImage image = PixelProbe::grab(&button);
            QVERIFY(near(at(image, 40, 4), fill) && near(at(image, 0, 12), border));
        }
    }

    // A copy owns its colours: it draws after the original is gone, and its changes stay its.
    void borderedCopy()
    {
        auto original = std::make_unique<VXFlatBorderedButtonCell>();
        original->setBorderColor(VXColor::redColor());
        std::unique_ptr<ButtonCell> copy = original->copy();
        auto *bordered = dynamic_cast<VXFlatBorderedButtonCell *>(copy.get());
        QVERIFY(bordered);
        bordered->setFillColor(VXColor::blueColor());
        QCOMPARE(original->fillColor(), std::optional<VXColor>(VXColor::whiteColor()));
        original.reset();
        const QImage image = drawCell(*copy, {80, 24});
        QVERIFY(near(at(image, 0, 12), Qt::red));
        QVERIFY(near(at(image, 40, 12), Qt::blue));
    }

    // Tick and dash where their points put them (drawn four times larger so the 2-point
    // strokes cover whole pixels), in their colours; the dash has no disabled colour.
    void checkMarks()
    {
        const QColor white = Qt::white, grey = q(quorvelleLightGrayDisabledControlColor());
        // state, enabled, tick, dash, box
        for (auto [state, enabled, tick, dash, box] :
             {std::tuple{1, true, q(quorvelleBlueColor()), white, white},
              {1, false, q(quorvelleBlueDisabledControlColor()), grey, grey},
              {-1, false, grey, q(quorvelleBlueColor()), grey},
              {0, true, white, white, white}}) {
            VXFlatCheckboxButtonCell cell(fromDescription);
            cell.setAllowsMixedState(true);
            cell.setState(state);
            cell.setEnabled(enabled);
            const QImage image = PixelProbe::render({64, 64}, [&](QPainter &p) {
                p.scale(4, 4);
                cell.drawImage(p, std::nullopt, QRectF(0, 0, 16, 16), nullptr);
            });
            // Box (0.5, 0.5, 15, 15), laid out upwards from the bottom edge: the tick runs
            // (4.79, 7.5) -> (7.29, 10.5) -> (12.29, 3) on the page; the dash along y 7.5 from
            // x 4.25 to 11.75. The probes on one mark keep clear of the other.
            const auto on = [&](double x, double y) { return at(image, 4 * x, 4 * y); };
            QVERIFY(near(on(6.04, 9.0), tick, 4) && near(on(11.3, 4.6), tick, 4));
            QVERIFY(near(on(7.0, 7.5), dash, 4) && near(on(11.5, 7.5), dash, 4));
            QVERIFY(near(on(12.0, 12.5), box, 4));
            QVERIFY(near(on(0.6, 8),
                         q(enabled ? quorvelleGrayColor() : quorvelleGrayDisabledControlColor()),
                         40));
        }
    }

    // The dot is a third of the mark; the mark moves right by 5 with a selection style.
    void radioMark()
    {
        for (auto [style, state, centreX] : {std::tuple{0u, 1, 7.5}, {2u, 1, 12.5}, {0u, 0, 7.5}}) {
            VXFlatRadioButtonCell cell;
            cell.setSelectionStyle(style);
            cell.setState(state);
            const QImage image = PixelProbe::render({96, 64}, [&](QPainter &p) {
                p.scale(4, 4);
                cell.drawImage(p, std::nullopt, QRectF(0, 0, 15, 15), nullptr);
            });
            const auto on = [&](double dx) { return at(image, 4 * (centreX + dx), 4 * 7.5); };
            const QColor dot = state ? q(quorvelleBlueColor()) : QColor(Qt::white);
            // Ring 14 wide: dot radius 14 / 6 = 2.33.
            QVERIFY(near(on(0), dot) && near(on(2.0), dot, 8));
            QVERIFY(near(on(2.8), Qt::white, 8) && near(on(-5.5), Qt::white));
        }
    }

    // Only a selected cell has a shape behind it: a rounded rectangle, or a tag rounded on
    // the left whose tip is the middle of the right edge.
    void selectionShape()
    {
        // style, state, tinted at: body, right corner, tip, inside the left corners' rounding
        for (auto [style, state, tinted] :
             {std::tuple{1u, 1, "xxxx"}, {2u, 1, "x-xx"}, {2u, 0, "----"}, {0u, 1, "----"}}) {
            VXFlatRadioButtonCell cell;
            cell.setSelectionStyle(style);
            cell.setState(state);
            const QImage image = drawCell(cell, {200, 24});
            // The fill is the blue at alpha 0.1 (26 of 255) over nothing; the very corners of
            // the rounded left side stay clear.
            QString found;
            for (QPoint p : {QPoint(150, 12), QPoint(196, 3), QPoint(196, 12), QPoint(4, 19)}) {
                const QColor c = at(image, p.x(), p.y());
                found += qAbs(c.alpha() - 26) <= 2 && c.blue() > c.red() ? u'x' : u'-';
            }
            QCOMPARE(found, QLatin1String(tinted));
            QVERIFY(at(image, 0, 23).alpha() < 20 && at(image, 0, 0).alpha() < 20);
        }
    }

    // Drawing one cell of the kit's matrix redraws the whole matrix; a plain one only the cell.
    void matrixRedraw()
    {
        for (bool kit : {true, false}) {
            std::unique_ptr<Matrix> matrix(kit ? new VXMatrix : new Matrix);
            auto *layout = new QVBoxLayout(matrix.get());
            for (int i = 0; i < 3; ++i) {
                auto *row = new Button;
                row->setCell(std::make_unique<VXFlatRadioButtonCell>());
                row->setText(QStringLiteral("Row %1").arg(i));
                layout->addWidget(row);
            }
            matrix->show();
            QVERIFY(QTest::qWaitForWindowExposed(matrix.get()));
            QCOMPARE(matrix->numberOfRows(), 3);
            QTest::mouseClick(matrix->cellAtRow(1, 0), Qt::LeftButton);
            QCOMPARE(matrix->selectedCell(), matrix->cellAtRow(1, 0));
            QTest::qWait(50);
            PixelProbe::PaintSpy recorder;
            matrix->installEventFilter(&recorder);
            matrix->drawCellAtRow(2, 0);
            QTRY_VERIFY(!recorder.painted.isEmpty());
            QTest::qWait(50);
            QCOMPARE((QRegion(matrix->rect()) - recorder.painted).isEmpty(), kit);
        }
    }
};

QTEST_MAIN(tst_FlatCells)
#include "tst_flatcells.moc"
