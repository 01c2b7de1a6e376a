// The cell base, its highlight hook and the artwork cell. Built twice: once more as an
// executable named "Quorvelle", the one process where the hook is installed.
#include "Bundle.h"
#include "Button.h"
#include "Matrix.h"
#include "PixelProbe.h"
#include "VXButtonCell.h"
#include "VXButtonCellQuorvelle.h"
#include "VXFlatCheckboxButtonCell.h"
#include "VXFlatRadioButtonCell.h"
#include "VXGeneralButtonCell.h"
#include "VXTrackingButton.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using PixelProbe::at;
using PixelProbe::near;
using Quorvelle::Bundle;
using Quorvelle::Button;
using Quorvelle::ButtonCell;
using Quorvelle::Matrix;

namespace {

class DisagreeingCell : public ButtonCell
{
public:
    QVariant value;
    QVariant objectValue() const override { return value; }
};

// Remembers what the cell looked like while it was drawn.
class RecordingCell : public ButtonCell
{
public:
    int stateWhileDrawing = 99;
    QString imageWhileDrawing;
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
void writeImage(const QString &dir, const QString &name, QSize size, QList<QColor> bands,
                bool horizontal = false)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y,
                                bands.at(horizontal ? y * bands.size() / size.height()
                                                    : x * bands.size() / size.width()));
    QVERIFY(image.save(dir + QStringLiteral("/images/") + name + QStringLiteral(".png")));
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

    QTemporaryDir _bundleDir;
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
    void initTestCase()
    {
        const QString d = _bundleDir.path();
        QVERIFY(QDir(d).mkpath(QStringLiteral("images")));
        writeImage(d, QStringLiteral("art_left"), {6, 20}, {Qt::red});
        writeImage(d, QStringLiteral("art_center"), {4, 20}, {Qt::green});
        writeImage(d, QStringLiteral("art_right"), {9, 20}, {Qt::blue});
        writeImage(d, QStringLiteral("art_left_hover"), {6, 20}, {Qt::yellow});
        writeImage(d, QStringLiteral("art_center_hover"), {4, 20}, {Qt::cyan});
        writeImage(d, QStringLiteral("art_left_pressed"), {6, 20}, {Qt::magenta});
        writeImage(d, QStringLiteral("art_right_pressed"), {9, 20}, {Qt::darkBlue});
        writeImage(d, QStringLiteral("tpl"), {10, 20}, {Qt::red, Qt::blue});
        writeImage(d, QStringLiteral("updown"), {10, 20}, {Qt::red, Qt::blue}, true);
        _bundle = Bundle::bundleWithPath(d);
        QVERIFY(_bundle);
    }

    // The object value is copied after the state and wins; the background style is raised
    // and enabledness comes along.
    void initWithButtonCell_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QVariant>("objectValue");
        QTest::addColumn<int>("expected");
        QTest::addRow("value off, state on") << 1 << QVariant(0) << 0;
        QTest::addRow("value on, state off") << 0 << QVariant(1) << 1;
        QTest::addRow("value mixed, mixed allowed") << 1 << QVariant(-1) << -1;
    }
    void initWithButtonCell()
    {
        QFETCH(int, state);
        QFETCH(QVariant, objectValue);
        QFETCH(int, expected);
        DisagreeingCell source;
        source.setAllowsMixedState(true);
        source.setState(state);
        source.value = objectValue;
        source.setTitle(QStringLiteral("Go"));
        source.setAttributedAlternateTitle(VXAttributedString(QStringLiteral("Stop")));
        source.setAlternateImage(
            VXImage(QStringLiteral("alt"), QImage(2, 2, QImage::Format_RGB32)));
        source.setTarget(this);
        source.setImagePosition(ButtonCell::ImageRight);
        source.setShowsStateBy(ButtonCell::ChangeBackgroundCellMask);
        source.setBordered(false);
        source.setBackgroundStyle(ButtonCell::BackgroundStyleLowered);
        source.setEnabled(false);
        source.setAction("press");

        const auto cell = VXButtonCell::initWithButtonCell<VXGeneralButtonCell>(source);
        QCOMPARE(cell->state(), expected);
        QCOMPARE(cell->backgroundStyle(), int(ButtonCell::BackgroundStyleRaised));
        QVERIFY(!cell->isEnabled());
        QCOMPARE(cell->title(), QStringLiteral("Go"));
        QCOMPARE(cell->attributedAlternateTitle().string(), QStringLiteral("Stop"));
        QCOMPARE(cell->alternateImage().value_or(VXImage()).name(), QStringLiteral("alt"));
        QCOMPARE(cell->target(), this);
        QCOMPARE(cell->imagePosition(), int(ButtonCell::ImageRight));
        QCOMPARE(cell->showsStateBy(), quint64(ButtonCell::ChangeBackgroundCellMask));
        QVERIFY(!cell->isBordered());
        QCOMPARE(cell->action(), QByteArray("press"));
        QVERIFY(!cell->hasHover()); // not in a tracking button: never hover
    }

    // A cell loaded from a description is of the class the description names.
    void cellWithClassName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addRow("general") << "VXGeneralButtonCell";
        QTest::addRow("check box") << "VXFlatCheckboxButtonCell";
        QTest::addRow("radio") << "VXFlatRadioButtonCell";
        QTest::addRow("unknown") << "NoSuchCell";
    }
    void cellWithClassName()
    {
        QFETCH(QString, name);
        const auto cell = ButtonCell::cellWithClassName(name, {});
        const char *made =
            !cell                                                  ? "NoSuchCell"
            : dynamic_cast<VXFlatCheckboxButtonCell *>(cell.get()) ? "VXFlatCheckboxButtonCell"
            : dynamic_cast<VXFlatRadioButtonCell *>(cell.get())    ? "VXFlatRadioButtonCell"
            : dynamic_cast<VXGeneralButtonCell *>(cell.get())      ? "VXGeneralButtonCell"
                                                                   : "other";
        QCOMPARE(QString::fromLatin1(made), name);
    }

    void highlightedOrPressed_data()
    {
        QTest::addColumn<bool>("highlighted");
        QTest::addColumn<QString>("view");
        QTest::addColumn<int>("viewState");
        QTest::addColumn<bool>("bordered");
        QTest::addColumn<quint64>("showsStateBy");
        QTest::addColumn<bool>("expected");
        QTest::addRow("highlighted in a matrix")
            << true << "matrix" << 0 << true << quint64(0) << true;
        QTest::addRow("on in a matrix") << false << "matrix" << 1 << true << quint64(14) << false;
        QTest::addRow("no view") << false << "none" << 1 << true << quint64(14) << false;
        QTest::addRow("bordered push-in") << false << "button" << 1 << true << quint64(2) << true;
        QTest::addRow("borderless push-in")
            << false << "button" << 1 << false << quint64(2) << false;
        QTest::addRow("borderless grey") << false << "button" << 1 << false << quint64(4) << true;
        QTest::addRow("contents only") << false << "button" << 1 << true << quint64(1) << false;
        QTest::addRow("button off") << false << "button" << 0 << true << quint64(8) << false;
    }
    void highlightedOrPressed()
    {
        QFETCH(bool, highlighted);
        QFETCH(QString, view);
        QFETCH(int, viewState);
        QFETCH(bool, bordered);
        QFETCH(quint64, showsStateBy);
        QFETCH(bool, expected);
        Button button;
        button.setButtonType(ButtonCell::PushOnPushOffButton);
        button.setState(viewState);
        Matrix matrix;
        ButtonCell cell;
        cell.setState(viewState ? 0 : 1); // the opposite: only the view's state counts
        cell.setHighlighted(highlighted);
        cell.setBordered(bordered);
        cell.setShowsStateBy(showsStateBy);
        cell.setControlView(view == QLatin1String("button")   ? static_cast<QWidget *>(&button)
                            : view == QLatin1String("matrix") ? &matrix
                                                              : nullptr);
        QCOMPARE(VXButtonCellQuorvelle::isHighlightedOrPressed(cell), expected);
    }

    // The mixed check box is drawn off with the mixed image, only in the product's process,
    // and is itself again afterwards.
    void mixedCheckboxHook_data()
    {
        QTest::addColumn<QString>("image");
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("swapped");
        const bool hooked = VXButtonCellQuorvelle::processName() == QLatin1String("Quorvelle");
        QTest::addRow("unchecked image, mixed") << "checkbox_unchecked" << -1 << hooked;
        QTest::addRow("other image, mixed") << "checkbox_mixed" << -1 << false;
        QTest::addRow("unchecked image, on") << "checkbox_unchecked" << 1 << false;
    }
    void mixedCheckboxHook()
    {
        QFETCH(QString, image);
        QFETCH(int, state);
        QFETCH(bool, swapped);
        RecordingCell cell;
        cell.setButtonType(ButtonCell::SwitchButton);
        cell.setAllowsMixedState(true);
        cell.setState(state);
        cell.setImage(VXImageCreation::imageNamed(image, nullptr));
        QVERIFY(cell.image());
        PixelProbe::render({20, 20}, [&](QPainter &p) {
            cell.drawWithFrame(p, {0, 0, 20, 20}, nullptr);
        });
        QCOMPARE(cell.stateWhileDrawing, swapped ? 0 : state);
        QCOMPARE(cell.imageWhileDrawing, swapped ? QStringLiteral("checkbox_mixed") : image);
        QCOMPARE(cell.state(), state);
        QCOMPARE(cell.image()->name(), image);
    }

    // On a screen of two device pixels per point the check box artwork comes from its "@2x"
    // file, at the same 14 points: the box's edge is as sharp as the 1x artwork's, where an
    // enlarged 1x image would smear it over intermediate greys.
    void checkboxArtworkAtTwoDevicePixels()
    {
        const auto render = [](double ratio) {
            Button button;
            auto cell = std::make_unique<ButtonCell>();
            cell->setButtonType(ButtonCell::SwitchButton);
            cell->setImage(
                VXImageCreation::imageNamed(QStringLiteral("checkbox_unchecked"), nullptr));
            button.setCell(std::move(cell));
            button.resize(20, 14);
            return PixelProbe::render(
                {20, 14}, [&](QPainter &p) { button.render(&p, {}, {}, {}); }, ratio, Qt::white);
        };
        const QImage plain = render(1.0), dense = render(2.0);
        const QColor edge = plain.pixelColor(0, 7);
        QVERIFY(!near(edge, Qt::white, 8));
        // Neither the edge's colour nor the white inside or around it.
        const auto intermediate = [&edge](const QImage &image, int row, int from, int to) {
            int count = 0;
            for (int x = from; x < to; ++x)
                count +=
                    !near(at(image, x, row), edge, 8) && !near(at(image, x, row), Qt::white, 8);
            return count;
        };
        // Across the left edge, the middle row: three points' worth of pixels.
        QCOMPARE(intermediate(dense, 14, 0, 6), intermediate(plain, 7, 0, 3));
        // 14 points wide: the right edge ends at device pixel 27.
        QVERIFY(near(at(dense, 27, 14), edge, 8));
        QVERIFY(near(at(dense, 28, 14), Qt::white, 8));
    }

    // The image where its position puts it in the pair of image and title, the pair as big
    // as the cell asks to be and centred in the frame; the title on the other side.
    void imagePosition_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("title");
        QTest::addRow("left") << int(ButtonCell::ImageLeft) << "Wide title";
        QTest::addRow("right") << int(ButtonCell::ImageRight) << "Wide title";
        QTest::addRow("above") << int(ButtonCell::ImageAbove) << "Title";
        QTest::addRow("below") << int(ButtonCell::ImageBelow) << "Title";
        QTest::addRow("overlaps") << int(ButtonCell::ImageOverlaps) << "";
        QTest::addRow("left, no title") << int(ButtonCell::ImageLeft) << "";
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
        button.cell()->setImage(VXImage(QStringLiteral("red"), red));
        button.cell()->setImagePosition(position);
        button.cell()->setBordered(false);
        const QImage image = PixelProbe::grab(&button);
        const QSizeF pair = button.cell()->cellSizeForBounds(QRectF(0, 0, 160, 80));
        const QRectF box((160 - pair.width()) / 2, (80 - pair.height()) / 2, pair.width(),
                         pair.height());
        const QRect mark = boxOf(image, [](QColor c) {
            return c.alpha() > 200 && c.red() > 200 && c.green() < 60 && c.blue() < 60;
        });
        const QRect ink = boxOf(image, [](QColor c) {
            return c.alpha() > 128 && c.red() < 128 && c.green() < 128 && c.blue() < 128;
        });
        QCOMPARE(mark.size(), QSize(10, 10));
        QCOMPARE(ink.isEmpty(), title.isEmpty());
        const QRectF m = QRectF(mark);
        using C = ButtonCell;
        const bool horizontal = position == C::ImageLeft || position == C::ImageRight;
        const double off[] = {horizontal ? m.center().y() - 40 : m.center().x() - 80,
                              position == C::ImageLeft    ? m.left() - box.left()
                              : position == C::ImageRight ? m.right() - box.right()
                              : position == C::ImageAbove ? m.top() - box.top()
                              : position == C::ImageBelow ? m.bottom() - box.bottom()
                                                          : m.center().y() - 40};
        for (double d : off)
            QVERIFY2(qAbs(d) <= 1, qPrintable(QStringLiteral("%1 %2").arg(d).arg(pair.width())));
        if (!title.isEmpty())
            QVERIFY(position == C::ImageLeft    ? ink.left() > mark.right()
                    : position == C::ImageRight ? ink.right() < mark.left()
                    : position == C::ImageAbove ? ink.top() > mark.bottom()
                                                : ink.bottom() < mark.top());
    }

    // What users of Qt buttons expect of every control on the cell layer: its role and
    // state for assistive tools, a mnemonic, Space and Return, a size from its cell.
    void widget_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("checkedAfterKeys");
        QTest::addRow("push button")
            << int(ButtonCell::MomentaryPushInButton) << int(QAccessible::Button) << false;
        QTest::addRow("check box")
            << int(ButtonCell::SwitchButton) << int(QAccessible::CheckBox) << false;
        QTest::addRow("radio button")
            << int(ButtonCell::RadioButton) << int(QAccessible::RadioButton) << true;
    }
    void widget()
    {
        QFETCH(int, type);
        QFETCH(int, role);
        QFETCH(bool, checkedAfterKeys);
        QWidget window;
        auto *button = new Button(&window);
        button->setButtonType(type);
        button->setText(QStringLiteral("&Go && stop"));
        // A sibling of the same kind: a radio button is exclusive only within a group.
        (new Button(&window))->setButtonType(type);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        button->setFocus();
        QCOMPARE(button->sizeHint(),
                 button->cell()->cellSizeForBounds(QRectF(0, 0, 10000, 10000)).toSize());
        QCOMPARE(button->cell()->title(), QStringLiteral("Go & stop"));
        QCOMPARE(button->shortcut(), QKeySequence(Qt::ALT | Qt::Key_G));

        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
        QVERIFY(accessible);
        QCOMPARE(int(accessible->role()), role);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Go & stop"));

        QSignalSpy clicks(button, &QAbstractButton::clicked);
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(button, Qt::Key_Return);
        QTRY_COMPARE(clicks.size(), 2);
        // Two presses toggle a check box back off; a radio button stays on.
        QCOMPARE(button->state() == ButtonCell::OnState, checkedAfterKeys);
        QCOMPARE(accessible->state().checked, checkedAfterKeys);
    }

    void exchange()
    {
        VXMethodTable<int(int)> table;
        table.replaceMethod("first", [](int x) { return x + 1; });
        VXExchangeMethodImplementations(table, "first", "second");
        QCOMPARE(table.implementation("first")(1), 0); // the empty implementation
        QCOMPARE(table.implementation("second")(1), 2);
        VXExchangeMethodImplementations(table, "first", "second");
        QCOMPARE(table.implementation("first")(1), 2);
    }

    // Caps at 0-6 and 94-100 (the right one scaled to the left's width), the centre between;
    // hover falls back to normal where there is no hover image, pressed never does.
    void threeSlices_data()
    {
        QTest::addColumn<bool>("hover");
        QTest::addColumn<bool>("pressed");
        QTest::addColumn<QColor>("left");
        QTest::addColumn<QColor>("centre");
        QTest::addColumn<QColor>("right");
        const QColor none = Qt::transparent;
        QTest::addRow("normal") << false << false << QColor(Qt::red) << QColor(Qt::green)
                                << QColor(Qt::blue);
        QTest::addRow("hover") << true << false << QColor(Qt::yellow) << QColor(Qt::cyan)
                               << QColor(Qt::blue);
        QTest::addRow("pressed") << false << true << QColor(Qt::magenta) << none
                                 << QColor(Qt::darkBlue);
        QTest::addRow("pressed over")
            << true << true << QColor(Qt::magenta) << none << QColor(Qt::darkBlue);
    }
    void threeSlices()
    {
        QFETCH(bool, hover);
        QFETCH(bool, pressed);
        QFETCH(QColor, left);
        QFETCH(QColor, centre);
        QFETCH(QColor, right);
        const QImage image = drawArtwork(QStringLiteral("art"), false, hover, pressed);
        for (int x : {0, 5, 6, 50, 93, 94, 99}) {
            const QColor expected = x < 6 ? left : x < 94 ? centre : right;
            QVERIFY2(near(at(image, x, 10), expected), qPrintable(QString::number(x)));
        }
    }

    // Template mode: no caps, the whole template stretched smoothly, so the two bands blend
    // only around the middle; upright whichever way the view's coordinates grow; no base
    // name: no artwork.
    void singleTemplate()
    {
        ArtworkCell bare;
        bare.base = QStringLiteral("tpl");
        bare.single = true;
        bare.bundle = _bundle;
        QCOMPARE(bare.sideSegmentWidth(), 0.0);
        const QImage image = drawArtwork(QStringLiteral("tpl"), true, false, false);
        for (int x : {1, 40})
            QVERIFY(near(at(image, x, 10), Qt::red));
        for (int x : {60, 98})
            QVERIFY(near(at(image, x, 10), Qt::blue));
        const QColor middle = at(image, 50, 10);
        QVERIFY2(middle.red() > 40 && middle.blue() > 40, qPrintable(middle.name()));
        QCOMPARE(at(drawArtwork(QString(), true, false, false), 50, 10).alpha(), 0);

        const QImage flipped = drawArtwork(QStringLiteral("updown"), true, false, false);
        QVERIFY(near(at(flipped, 50, 2), Qt::red));
        QVERIFY(near(at(flipped, 50, 17), Qt::blue));
        QCOMPARE(drawArtwork(QStringLiteral("updown"), true, false, false, new UnflippedButton),
                 flipped);
    }

    // A missing image is asked for again; a loaded one is kept until the resources are
    // invalidated.
    void lazyLoading()
    {
        const QString d = _bundleDir.path();
        ArtworkCell cell;
        cell.base = QStringLiteral("late");
        cell.single = true;
        cell.bundle = _bundle;
        QVERIFY(!cell.templateImageNormal());
        writeImage(d, QStringLiteral("late"), {4, 4}, {Qt::red});
        QCOMPARE(cell.templateImageNormal()->size(), QSizeF(4, 4));
        writeImage(d, QStringLiteral("late"), {8, 8}, {Qt::green});
        QCOMPARE(cell.templateImageNormal()->size(), QSizeF(4, 4));
        Button view;
        cell.setControlView(&view);
        cell.invalidateResources();
        QCOMPARE(cell.templateImageNormal()->size(), QSizeF(8, 8));
    }
};

QTEST_MAIN(tst_ButtonCells)
#include "tst_buttoncells.moc"
