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
#include <tuple>

namespace KitWidgetsCheck {

inline bool sameRgba(const std::optional<VXColor> &color, int r, int g, int b, int a = 255)
{
    if (!color || color->colorSpace() != VXColor::ColorSpace::CalibratedRGB)
        return false;
    const double *c = color->components();
    const int expected[] = {r, g, b, a};
    for (int i = 0; i < 4; ++i) {
        if (std::abs(c[i] - expected[i] / 255.0) >= 1e-6)
            return false;
    }
    return true;
}

inline bool closeTo(QRgb pixel, int r, int g, int b)
{
    return std::abs(qRed(pixel) - r) <= 24 && std::abs(qGreen(pixel) - g) <= 24 &&
           std::abs(qBlue(pixel) - b) <= 24;
}

// Returns one line per property that did not arrive; empty when all did.
inline QStringList mismatches(QWidget *form)
{
    QStringList failures;
    const auto expect = [&failures](bool ok, const QString &what) {
        if (!ok)
            failures << what;
    };
    const auto button = [form](const char *name) {
        return form->findChild<Quorvelle::Button *>(QString::fromLatin1(name));
    };

    auto *header = form->findChild<VXGradientView *>(QStringLiteral("header"));
    expect(header, QStringLiteral("header is no VXGradientView"));
    if (header) {
        expect(sameRgba(header->startGradientColor(), 58, 123, 213) &&
                   sameRgba(header->finishGradientColor(), 250, 210, 40) &&
                   sameRgba(header->topLineColor(), 0, 128, 0) &&
                   sameRgba(header->bottomLineColor(), 200, 0, 0, 128),
               QStringLiteral("header: a gradient or line colour"));
        expect(std::abs(header->gradientAngle() - 90.0) < 1e-6 &&
                   std::abs(header->cornerRadius() - 6.0) < 1e-6,
               QStringLiteral("header: gradientAngle or cornerRadius"));
        // At 90 degrees the start colour is at the bottom: probes inside the top and
        // bottom lines, in the middle of the width.
        const QImage picture = header->grab().toImage();
        const int x = picture.width() / 2, rows = picture.height();
        const qreal scale = picture.devicePixelRatio();
        expect(rows >= int(90 * scale) && closeTo(picture.pixel(x, int(6 * scale)), 250, 210, 40) &&
                   closeTo(picture.pixel(x, rows - 1 - int(6 * scale)), 58, 123, 213),
               QStringLiteral("header: the gradient's colours are not drawn bottom (start) to top "
                              "(finish)"));
    }

    auto *flat = button("flatButton");
    expect(flat && dynamic_cast<VXFlatButtonCell *>(flat->cell()) &&
               flat->cell()->controlSize() == 1 && flat->buttonType() == 7 &&
               flat->text() == QStringLiteral("&Remove") &&
               flat->cellClass() == QStringLiteral("VXFlatButtonCell"),
           QStringLiteral("flatButton: cell, controlSize, buttonType, text or cellClass"));
    auto *bordered = button("borderedButton");
    expect(bordered && dynamic_cast<VXFlatBorderedButtonCell *>(bordered->cell()) &&
               bordered->cell()->isBordered(),
           QStringLiteral("borderedButton: no bordered VXFlatBorderedButtonCell"));
    auto *check = button("checkBox");
    expect(check && dynamic_cast<VXFlatCheckboxButtonCell *>(check->cell()) &&
               check->cell()->buttonType() == 3 && !check->cell()->isBordered() &&
               check->isChecked() && check->cell()->state() == Quorvelle::ButtonCell::OnState,
           QStringLiteral("checkBox: cell, buttonType, bordered or the checked state"));

    for (const auto &[name, style, selected] : {std::tuple{"roundedMatrix", 1u, "roundedSecond"},
                                                std::tuple{"tagMatrix", 2u, "tagFirst"}}) {
        auto *matrix = form->findChild<VXMatrix *>(QString::fromLatin1(name));
        bool rows = matrix && matrix->selectionStyle() == style && matrix->numberOfRows() == 2 &&
                    matrix->selectedCell() &&
                    matrix->selectedCell()->objectName() == QString::fromLatin1(selected);
        for (Quorvelle::Button *row : matrix ? matrix->cells() : QList<Quorvelle::Button *>()) {
            auto *cell = dynamic_cast<VXFlatRadioButtonCell *>(row->cell());
            rows = rows && cell && cell->selectionStyle() == style;
        }
        expect(rows,
               QString::fromLatin1(name) +
                   QStringLiteral(": selection style, rows, their cells or the selected row"));
    }

    auto *tracking = form->findChild<VXTrackingButton *>(QStringLiteral("trackingButton"));
    expect(
        tracking && dynamic_cast<VXFlatBorderedButtonCell *>(tracking->cell()) &&
            tracking->cell()->controlSize() == 2 && tracking->text() == QStringLiteral("Get it"),
        QStringLiteral("trackingButton: no VXTrackingButton with its cell, controlSize and text"));
    return failures;
}

} // namespace KitWidgetsCheck
