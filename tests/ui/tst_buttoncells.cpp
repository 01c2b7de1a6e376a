// The cell base, its highlight hook and the artwork cell. Built twice: once more as an
// executable named "Quorvelle", the one process where the hook is installed.
#include "Bundle.h"
#include "Button.h"
#include "Matrix.h"
#include "PixelProbe.h"
#include "VXButtonCell.h"
#include "VXButtonCellQuorvelle.h"
#include "VXGeneralButtonCell.h"
#include "VXTrackingButton.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using PixelProbe::at;
using PixelProbe::near;
using Quorvelle::Bundle;
using Quorvelle::Button;
using Quorvelle::ButtonCell;
using Quorvelle::Matrix;
using C = Quorvelle::ButtonCell;

// highlighted, view (0 none, 1 button, 2 matrix), view's state, bordered, showsStateBy, result
using HighlightRow = std::tuple<bool, int, int, bool, quint64, bool>;
Q_DECLARE_METATYPE(HighlightRow)
// hover, pressed, left cap, centre, right cap
using SliceRow = std::tuple<bool, bool, QColor, QColor, QColor>;
Q_DECLARE_METATYPE(SliceRow)

namespace {

// Disagrees with its state; remembers what it looked like while it was drawn.
class RecordingCell : public ButtonCell
{
public:
    QVariant value;
    int stateWhileDrawing = 99;
    QString imageWhileDrawing;
    QVariant objectValue() const override { return value; }
    void drawInteriorWithFrame(QPainter &, const QRectF &, QWidget *) override
    {
        stateWhileDrawing = state();
        imageWhileDrawing = image() ? image()->name() : QString();
    }
};

class ArtworkCell : public VXGeneralButtonCell
{
public:
    QString base;
    bool single = false;
    Bundle *bundle = nullptr;
    QString baseResourceImageName() const override { return base; }
    bool useSingleImageTemplate() const override { return single; }
    Bundle *resourcesBundle() const override { return bundle; }
};

class UnflippedButton : public VXTrackingButton
{
public:
    bool isFlipped() const override { return false; }
};

// Writes an image of equal vertical colour bands, or horizontal ones.
void writeImage(const QString &dir, const char *name, QSize size, QList<QColor> bands,
                bool horizontal = false)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y,
                                bands.at(horizontal ? y * bands.size() / size.height()
                                                    : x * bands.size() / size.width()));
    QVERIFY(image.save(dir + u"/images/%1.png"_s.arg(QLatin1String(name))));
}

// The bounding box of the pixels that pass `test`.
template <typename Test> QRect boxOf(const QImage &image, Test test)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (test(image.pixelColor(x, y)))
                box |= QRect(x, y, 1, 1);
    return box;
}

} // namespace

class tst_ButtonCells : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    Bundle *_bundle = nullptr;

    // A button 100 x 20 showing an artwork cell, with the given hover and press.
    QImage drawArtwork(const QString &base, bool single, bool hover, bool pressed,
                       VXTrackingButton *button = nullptr)
    {
        std::unique_ptr<VXTrackingButton> owned(button ? button : new VXTrackingButton);
        auto cell = std::make_unique<ArtworkCell>();
        cell->base = base;
        cell->single = single;
        cell->bundle = _bundle;
        cell->setBordered(false);
        owned->resize(100, 20);
        owned->setCell(std::move(cell));
        owned->setHasHover(hover);
        owned->setDown(pressed);
        return PixelProbe::grab(owned.get());
    }

private Q_SLOTS:
    // Drawing and loading artwork say nothing on the terminal.
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void initTestCase()
    {
        const QString d = _dir.path();
        QVERIFY(QDir(d).mkpath(u"images"_s));
        writeImage(d, "art_left", {6, 20}, {Qt::red});
        writeImage(d, "art_center", {4, 20}, {Qt::green});
        writeImage(d, "art_right", {9, 20}, {Qt::blue});
        writeImage(d, "art_left_hover", {6, 20}, {Qt::yellow});
        writeImage(d, "art_center_hover", {4, 20}, {Qt::cyan});
        writeImage(d, "tpl", {10, 20}, {Qt::red, Qt::blue});
        writeImage(d, "updown", {10, 20}, {Qt::red, Qt::blue}, true);
        QVERIFY((_bundle = Bundle::bundleWithPath(d)));
    }

    // Every setting comes along; the object value is copied after the state and wins, the
    // background style is raised; a cell outside a tracking button never has hover.
    void initWithButtonCell()
    {
        for (auto [state, value, expected] : {std::tuple{1, 0, 0}, {0, 1, 1}, {1, -1, -1}}) {
            RecordingCell source;
            source.setAllowsMixedState(true);
            source.setState(state);
            source.value = value;
            source.setTitle(u"Go"_s);
            source.setAttributedAlternateTitle(VXAttributedString(u"Stop"_s));
            source.setAlternateImage(VXImage(u"alt"_s, QImage(2, 2, QImage::Format_RGB32)));
            source.setTarget(this);
            source.setImagePosition(C::ImageRight);
            source.setShowsStateBy(C::ChangeBackgroundCellMask);
            source.setBordered(false);
            source.setBackgroundStyle(C::BackgroundStyleLowered);
            source.setEnabled(false);
            source.setAction("press");
            const auto cell = VXButtonCell::initWithButtonCell<VXGeneralButtonCell>(source);
            QCOMPARE(cell->state(), expected);
            QCOMPARE(cell->backgroundStyle(), int(C::BackgroundStyleRaised));
            QVERIFY(!cell->isEnabled() && !cell->isBordered() && !cell->hasHover());
            QCOMPARE(cell->title(), u"Go"_s);
            QCOMPARE(cell->attributedAlternateTitle().string(), u"Stop"_s);
            QCOMPARE(cell->alternateImage().value_or(VXImage()).name(), u"alt"_s);
            QCOMPARE(cell->target(), this);
            QCOMPARE(cell->imagePosition(), int(C::ImageRight));
            QCOMPARE(cell->showsStateBy(), quint64(C::ChangeBackgroundCellMask));
            QCOMPARE(cell->action(), QByteArray("press"));
        }
    }

    void highlightedOrPressed_data()
    {
        QTest::addColumn<HighlightRow>("row");
        QTest::addRow("highlighted in a matrix") << HighlightRow{true, 2, 0, true, 0, true};
        QTest::addRow("bordered push-in") << HighlightRow{false, 1, 1, true, 2, true};
        QTest::addRow("borderless push-in") << HighlightRow{false, 1, 1, false, 2, false};
        QTest::addRow("borderless grey") << HighlightRow{false, 1, 1, false, 4, true};
    }
    void highlightedOrPressed()
    {
        QFETCH(HighlightRow, row);
        const auto [highlighted, view, viewState, bordered, showsStateBy, expected] = row;
        Button button;
        button.setButtonType(C::PushOnPushOffButton);
        button.setState(viewState);
        Matrix matrix;
        ButtonCell cell;
        cell.setState(viewState ? 0 : 1); // the opposite: only the view's state counts
        cell.setHighlighted(highlighted);
        cell.setBordered(bordered);
        cell.setShowsStateBy(showsStateBy);
        cell.setControlView(view == 1   ? static_cast<QWidget *>(&button)
                            : view == 2 ? &matrix
                                        : nullptr);
        QCOMPARE(VXButtonCellQuorvelle::isHighlightedOrPressed(cell), expected);
    }

    // The mixed check box is drawn off with the mixed image, only in the product's process,
    // and is itself again afterwards.
    void mixedCheckboxHook()
    {
        const bool hooked = VXButtonCellQuorvelle::processName() == "Quorvelle"_L1;
        for (auto [image, state, swapped] : {std::tuple{"checkbox_unchecked", -1, hooked},
                                             {"checkbox_mixed", -1, false},
                                             {"checkbox_unchecked", 1, false}}) {
            RecordingCell cell;
            cell.setButtonType(C::SwitchButton);
            cell.setAllowsMixedState(true);
            cell.setState(state);
            cell.setImage(VXImageCreation::imageNamed(QLatin1String(image), nullptr));
            PixelProbe::render({20, 20}, [&](QPainter &p) {
                cell.drawWithFrame(p, {0, 0, 20, 20}, nullptr);
            });
            QCOMPARE(cell.stateWhileDrawing, swapped ? 0 : state);
            QCOMPARE(cell.imageWhileDrawing, QLatin1String(swapped ? "checkbox_mixed" : image));
            QCOMPARE(cell.state(), state);
            QCOMPARE(cell.image().value_or(VXImage()).name(), QLatin1String(image));
        }
    }

    // On a screen of two device pixels per point the check box artwork comes from its "@2x"
    // file, at the same 14 points: the box's edge is as sharp as the 1x artwork's, where an
    // enlarged 1x image would smear it over intermediate greys.
    void checkboxArtworkAtTwoDevicePixels()
    {
        Button button;
        button.setButtonType(C::SwitchButton);
        button.cell()->setImage(VXImageCreation::imageNamed(u"checkbox_unchecked"_s, nullptr));
        button.resize(20, 14);
        const auto render = [&](double ratio) {
            return PixelProbe::render(
                {20, 14}, [&](QPainter &p) { button.render(&p, {}, {}, {}); }, ratio, Qt::white);
        };
        const QImage plain = render(1.0), dense = render(2.0);
        const QColor edge = plain.pixelColor(0, 7);
        QVERIFY(!near(edge, Qt::white, 8));
        // Neither the edge's colour nor the white inside or around it, across the left edge
        // in the middle row: three points' worth of pixels.
        const auto intermediate = [&edge](const QImage &image, int row, int to) {
            int count = 0;
            for (int x = 0; x < to; ++x)
                count +=
                    !near(at(image, x, row), edge, 8) && !near(at(image, x, row), Qt::white, 8);
            return count;
        };
        QCOMPARE(intermediate(dense, 14, 6), intermediate(plain, 7, 3));
        // 14 points wide: the right edge ends at device pixel 27.
        QVERIFY(near(at(dense, 27, 14), edge, 8) && near(at(dense, 28, 14), Qt::white, 8));
    }

    // The image where its position puts it in the pair of image and title, the pair as big
    // as the cell asks to be and centred in the frame; the title on the other side.
    void imagePosition_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("title");
        QTest::addRow("left") << int(C::ImageLeft) << "Wide title";
        QTest::addRow("right") << int(C::ImageRight) << "Wide title";
        QTest::addRow("above") << int(C::ImageAbove) << "Title";
        QTest::addRow("overlaps") << int(C::ImageOverlaps) << "";
    }
    void imagePosition()
    {
        QFETCH(int, position);
        QFETCH(QString, title);
        Button button;
        button.resize(160, 80);
        button.setText(title);
        QImage red(10, 10, QImage::Format_ARGB32);
        red.fill(Qt::red);
        button.cell()->setImage(VXImage(u"red"_s, red));
        button.cell()->setImagePosition(position);
        button.cell()->setBordered(false);
        const QImage image = PixelProbe::grab(&button);
        const QSizeF pair = button.cell()->cellSizeForBounds(QRectF(0, 0, 160, 80));
        const QRectF box(QPointF(160 - pair.width(), 80 - pair.height()) / 2, pair);
        const QRectF m = boxOf(
            image, [](QColor c) { return c.alpha() > 200 && c.red() > 200 && c.green() < 60; });
        const QRect ink = boxOf(image, [](QColor c) { return c.alpha() > 128 && c.red() < 128; });
        QCOMPARE(m.size(), QSizeF(10, 10));
        QCOMPARE(ink.isEmpty(), title.isEmpty());
        const bool horizontal = position == C::ImageLeft || position == C::ImageRight;
        const double off[] = {horizontal ? m.center().y() - 40 : m.center().x() - 80,
                              position == C::ImageLeft    ? m.left() - box.left()
                              : position == C::ImageRight ? m.right() - box.right()
                              : position == C::ImageAbove ? m.top() - box.top()
                              : position == C::ImageBelow ? m.bottom() - box.bottom()
                                                          : m.center().y() - 40};
        QVERIFY2(qAbs(off[0]) <= 1 && qAbs(off[1]) <= 1,
                 qPrintable(u"%1 %2"_s.arg(off[0]).arg(off[1])));
        // The title's ink one gap (4 points, plus the glyphs' side bearing) from the image.
        const double gap = position == C::ImageLeft    ? ink.left() - m.right()
                           : position == C::ImageRight ? m.left() - ink.right()
                           : position == C::ImageAbove ? ink.top() - m.bottom()
                                                       : m.top() - ink.bottom();
        if (!title.isEmpty())
            QVERIFY2(gap > 1 && gap <= 8, qPrintable(QString::number(gap)));
    }

    // What users of Qt buttons expect of every control on the cell layer: its role and
    // state for assistive tools, a mnemonic, Space and Return, a size from its cell. Two
    // presses toggle a check box back off; a radio button stays on.
    void widget_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("checkedAfterKeys");
        QTest::addRow("push button")
            << int(C::MomentaryPushInButton) << int(QAccessible::Button) << false;
        QTest::addRow("check box") << int(C::SwitchButton) << int(QAccessible::CheckBox) << false;
        QTest::addRow("radio button")
            << int(C::RadioButton) << int(QAccessible::RadioButton) << true;
    }
    void widget()
    {
        QFETCH(int, type);
        QFETCH(int, role);
        QFETCH(bool, checkedAfterKeys);
        QWidget window;
        auto *button = new Button(&window);
        button->setButtonType(type);
        button->setText(u"G&o && stop"_s);
        // A sibling of the same kind: a radio button is exclusive only within a group.
        (new Button(&window))->setButtonType(type);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        button->setFocus();
        QCOMPARE(button->sizeHint(),
                 button->cell()->cellSizeForBounds({0, 0, 10000, 10000}).toSize());
        QCOMPARE(button->cell()->title(), u"Go & stop"_s);
        QCOMPARE(button->shortcut(), QKeySequence(Qt::ALT | Qt::Key_O));
        // The mnemonic underlined where the style underlines mnemonics, as on Qt's buttons.
        PixelProbe::grab(button);
        const VXAttributedString shown = button->cell()->attributedTitle();
        QString underline;
        for (std::uint64_t i = 0; i < shown.length(); ++i)
            underline +=
                shown.attributesAtIndex(i).contains(VXUnderlineStyleAttributeName) ? u'x' : u'-';
        const bool underlines =
            button->style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, button);
        QCOMPARE(underline, QLatin1String(underlines ? "-x-------" : "---------"));
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
        QCOMPARE(int(accessible->role()), role);
        QCOMPARE(accessible->text(QAccessible::Name), u"Go & stop"_s);
        QSignalSpy clicks(button, &QAbstractButton::clicked);
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(button, Qt::Key_Return);
        QTRY_COMPARE(clicks.size(), 2);
        QCOMPARE(button->state() == C::OnState, checkedAfterKeys);
        QCOMPARE(accessible->state().checked, checkedAfterKeys);
        button->setEnabled(false);
        QVERIFY(!button->cell()->isEnabled());
    }

    // Caps at 0-6 and 94-100 (the right one scaled to the left's width), the centre between;
    // hover falls back to normal where there is no hover image.
    void threeSlices_data()
    {
        QTest::addColumn<SliceRow>("row");
        QTest::addRow("normal") << SliceRow{false, false, Qt::red, Qt::green, Qt::blue};
        QTest::addRow("hover") << SliceRow{true, false, Qt::yellow, Qt::cyan, Qt::blue};
    }
    void threeSlices()
    {
        QFETCH(SliceRow, row);
        const auto [hover, pressed, left, centre, right] = row;
        const QImage image = drawArtwork(u"art"_s, false, hover, pressed);
        for (int x : {0, 5, 6, 50, 93, 94, 99})
            QVERIFY2(near(at(image, x, 10), x < 6    ? left
                                            : x < 94 ? centre
                                                     : right),
                     qPrintable(QString::number(x)));
    }

    // Template mode: no caps, the whole template stretched smoothly, so the two bands blend
    // only around the middle; upright whichever way the view's coordinates grow; no base
    // name: no artwork.
    void singleTemplate()
    {
        ArtworkCell bare;
        bare.base = u"tpl"_s;
        bare.single = true;
        bare.bundle = _bundle;
        QCOMPARE(bare.sideSegmentWidth(), 0.0);
        const QImage image = drawArtwork(u"tpl"_s, true, false, false);
        for (int x : {1, 40, 60, 98})
            QVERIFY(near(at(image, x, 10), x < 50 ? Qt::red : Qt::blue));
        const QColor middle = at(image, 50, 10);
        QVERIFY2(middle.red() > 40 && middle.blue() > 40, qPrintable(middle.name()));
        QCOMPARE(at(drawArtwork(QString(), true, false, false), 50, 10).alpha(), 0);

        const QImage flipped = drawArtwork(u"updown"_s, true, false, false);
        QVERIFY(near(at(flipped, 50, 2), Qt::red) && near(at(flipped, 50, 17), Qt::blue));
        QCOMPARE(drawArtwork(u"updown"_s, true, false, false, new UnflippedButton), flipped);
    }
};

QTEST_MAIN(tst_ButtonCells)
#include "tst_buttoncells.moc"
