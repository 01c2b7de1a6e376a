#include "GallerySections.h"

#include "VXGradientView.h"
#include "VXQuorvelleColor.h"

#include <QGridLayout>
#include <QLabel>

namespace {
// Dash arrays are referenced by the views, so they live as long as the program.
const double shortDash[] = {4.0, 2.0};
const double longDash[] = {8.0, 3.0, 2.0, 3.0};

VXGradientView *band(const QString &, double angle, std::optional<VXColor> start,
                     std::optional<VXColor> finish)
{
    auto *view = new VXGradientView(QRect(0, 0, 150, 44));
    view->setFixedSize(150, 44);
    view->setGradientAngle(angle);
    view->setStartGradientColor(start);
    view->setFinishGradientColor(finish);
    return view;
}
} // namespace

QWidget *galleryGradientSection()
{
    using namespace QuorvelleColor;
    auto *section = new QWidget;
    auto *grid = new QGridLayout(section);
    const auto add = [&](int index, const QString &caption, VXGradientView *view) {
        grid->addWidget(view, (index / 4) * 2, index % 4);
        grid->addWidget(new QLabel(caption), (index / 4) * 2 + 1, index % 4);
    };
    add(0, QStringLiteral("defaults (desktop colours)"), new VXGradientView(QRect(0, 0, 150, 44)));
    grid->itemAtPosition(0, 0)->widget()->setFixedSize(150, 44);

    add(1, QStringLiteral("270°: blue on top"),
        band({}, 270, quorvelleBlueColor(), quorvelleDarkBlueColor()));
    add(2, QStringLiteral("90°: blue at the bottom"),
        band({}, 90, quorvelleBlueColor(), quorvelleDarkBlueColor()));
    add(3, QStringLiteral("0°: green on the left"),
        band({}, 0, levelIndicatorGreenGradienColor(), levelIndicatorRedGradienColor()));

    auto *dashed = band({}, 270, serviceWindowBackgroundColor(), quorvelleGrayColor());
    dashed->setTopLineColor(quorvelleBlueColor());
    dashed->setBottomLineColor(quorvelleRedColor());
    dashed->setTopLineDash(shortDash, 2);
    add(4, QStringLiteral("top dash, shared by the bottom"), dashed);

    auto *ownDash = band({}, 270, serviceWindowBackgroundColor(), quorvelleGrayColor());
    ownDash->setTopLineColor(quorvelleBlueColor());
    ownDash->setBottomLineColor(quorvelleRedColor());
    ownDash->setTopLineDash(shortDash, 2);
    ownDash->setBottomLineDash(longDash, 4);
    add(5, QStringLiteral("each line its own dash"), ownDash);

    auto *rounded = band({}, 270, infoMessageSuccessFillColor(), infoMessageSuccessBorderColor());
    rounded->setCornerRadius(10);
    rounded->setTopLineColor(std::nullopt);
    rounded->setBottomLineColor(std::nullopt);
    add(6, QStringLiteral("corner radius 10, no lines"), rounded);

    auto *solid = band({}, 270, infoMessageErrorFillColor(), infoMessageErrorFillColor());
    solid->setCornerRadius(4);
    solid->setTopLineColor(std::nullopt);
    add(7, QStringLiteral("equal colours: solid, radius 4"), solid);
    grid->setColumnStretch(4, 1);
    return section;
}

static GallerySectionRegistration registration(40, QStringLiteral("Gradient views"),
                                               &galleryGradientSection);
