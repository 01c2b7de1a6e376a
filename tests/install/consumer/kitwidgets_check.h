#pragma once

// What kitwidgets.ui sets, checked on the widgets made from it: by QUiLoader through the
// Designer plugin, and by a program compiled from uic's output. The form must have been
// shown (a matrix hands its selection style to rows as they are polished).

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXFlatBorderedButtonCell.h>
#include <Quorvelle/Widgets/VXFlatButtonCell.h>
#include <Quorvelle/Widgets/VXFlatCheckboxButtonCell.h>
#include <Quorvelle/Widgets/VXFlatRadioButtonCell.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXTrackingButton.h>

#include <QImage>
#include <QStringList>

#include <cmath>
#include <cstdlib>

namespace KitWidgetsCheck {

inline bool near(double value, double expected)
{
    return std::abs(value - expected) < 1e-6;
}

inline bool sameRgba(const std::optional<VXColor> &color, int r, int g, int b, int a = 255)
{
    if (!color || color->colorSpace() != VXColor::ColorSpace::CalibratedRGB)
        return false;
    const double *c = color->components();
    return near(c[0], r / 255.0) && near(c[1], g / 255.0) && near(c[2], b / 255.0) &&
           near(c[3], a / 255.0);
}

inline bool closeTo(QRgb pixel, int r, int g, int b)
{
    const int tolerance = 24;
    return std::abs(qRed(pixel) - r) <= tolerance && std::abs(qGreen(pixel) - g) <= tolerance &&
           std::abs(qBlue(pixel) - b) <= tolerance;
}

// Returns one line per property that did not arrive; empty when all did.
inline QStringList mismatches(QWidget *form)
{
    QStringList failures;
    const auto fail = [&failures](const char *what) { failures << QString::fromLatin1(what); };
    const auto find = [form](const char *name) {
        return form->findChild<QWidget *>(QString::fromLatin1(name));
    };

    auto *header = qobject_cast<VXGradientView *>(find("header"));
    if (!header) {
        fail("header is no VXGradientView");
    } else {
        if (!sameRgba(header->startGradientColor(), 58, 123, 213))
            fail("header: startGradientColor");
        if (!sameRgba(header->finishGradientColor(), 250, 210, 40))
            fail("header: finishGradientColor");
        if (!sameRgba(header->topLineColor(), 0, 128, 0))
            fail("header: topLineColor");
        if (!sameRgba(header->bottomLineColor(), 200, 0, 0, 128))
            fail("header: bottomLineColor");
        if (!near(header->gradientAngle(), 90.0))
            fail("header: gradientAngle");
        if (!near(header->cornerRadius(), 6.0))
            fail("header: cornerRadius");
        // At 90 degrees the start colour is at the bottom: probes inside the top and
        // bottom lines, in the middle of the width.
        const QImage picture = header->grab().toImage();
        const int x = picture.width() / 2, rows = picture.height();
        const qreal scale = picture.devicePixelRatio();
        if (rows < int(90 * scale) || !closeTo(picture.pixel(x, int(6 * scale)), 250, 210, 40) ||
            !closeTo(picture.pixel(x, rows - 1 - int(6 * scale)), 58, 123, 213))
            fail("header: the gradient's colours are not drawn bottom (start) to top (finish)");
    }

    auto *flat = qobject_cast<Quorvelle::Button *>(find("flatButton"));
    if (!flat || !dynamic_cast<VXFlatButtonCell *>(flat->cell()))
        fail("flatButton: no Quorvelle::Button with a VXFlatButtonCell");
    else if (flat->cell()->controlSize() != 1 || flat->buttonType() != 7 ||
             flat->text() != QStringLiteral("&Remove") ||
             flat->cellClass() != QStringLiteral("VXFlatButtonCell"))
        fail("flatButton: controlSize, buttonType, text or cellClass");

    auto *bordered = qobject_cast<Quorvelle::Button *>(find("borderedButton"));
    if (!bordered || !dynamic_cast<VXFlatBorderedButtonCell *>(bordered->cell()) ||
        !bordered->cell()->isBordered())
        fail("borderedButton: no bordered VXFlatBorderedButtonCell");

    auto *check = qobject_cast<Quorvelle::Button *>(find("checkBox"));
    if (!check || !dynamic_cast<VXFlatCheckboxButtonCell *>(check->cell()))
        fail("checkBox: no VXFlatCheckboxButtonCell");
    else if (check->cell()->buttonType() != 3 || check->cell()->isBordered() ||
             !check->isChecked() || check->cell()->state() != Quorvelle::ButtonCell::OnState)
        fail("checkBox: buttonType, bordered or the checked state");

    const auto checkMatrix = [&](const char *name, uint style, const char *selected) {
        auto *matrix = qobject_cast<VXMatrix *>(find(name));
        if (!matrix || matrix->selectionStyle() != style || matrix->numberOfRows() != 2) {
            failures << QString::fromLatin1(name) + QStringLiteral(": selectionStyle or rows");
            return;
        }
        for (Quorvelle::Button *row : matrix->cells()) {
            auto *cell = dynamic_cast<VXFlatRadioButtonCell *>(row->cell());
            if (!cell || cell->selectionStyle() != style)
                failures << row->objectName() + QStringLiteral(": no radio cell of the style");
        }
        if (!matrix->selectedCell() ||
            matrix->selectedCell()->objectName() != QString::fromLatin1(selected))
            failures << QString::fromLatin1(name) + QStringLiteral(": selected row");
    };
    checkMatrix("roundedMatrix", 1, "roundedSecond");
    checkMatrix("tagMatrix", 2, "tagFirst");

    auto *tracking = qobject_cast<VXTrackingButton *>(find("trackingButton"));
    if (!tracking || !dynamic_cast<VXFlatBorderedButtonCell *>(tracking->cell()) ||
        tracking->cell()->controlSize() != 2 || tracking->text() != QStringLiteral("Get it"))
        fail("trackingButton: no VXTrackingButton with its cell, controlSize and text");
    return failures;
}

} // namespace KitWidgetsCheck
