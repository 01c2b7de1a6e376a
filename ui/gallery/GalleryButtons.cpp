#include "GallerySections.h"

#include "Bundle.h"
#include "VXFlatBorderedButtonCell.h"
#include "VXFlatButtonCell.h"
#include "VXFlatCheckboxButtonCell.h"
#include "VXFlatRadioButtonCell.h"
#include "VXGeneralButtonCell.h"
#include "VXMatrix.h"
#include "VXTrackingButton.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <functional>

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;

using Quorvelle::Bundle;

namespace {

// The gallery's own artwork, drawn by scripts/draw-button-artwork, in gallery/images/.
Bundle *galleryBundle()
{
    return Bundle::bundleWithPath(QCoreApplication::applicationDirPath() +
                                  QStringLiteral("/gallery"));
}

class SlicesCell : public VXGeneralButtonCell
{
public:
    SlicesCell() { setBordered(false); }
    std::unique_ptr<ButtonCell> copy() const override
    {
        return std::make_unique<SlicesCell>(*this);
    }
    QString baseResourceImageName() const override { return QStringLiteral("gallerySlices"); }
    bool useSingleImageTemplate() const override { return false; }
    Bundle *resourcesBundle() const override { return galleryBundle(); }
};

// One template cut into 6-point caps and a stretched centre.
class TemplateCell : public VXGeneralButtonCell
{
public:
    TemplateCell() { setBordered(false); }
    std::unique_ptr<ButtonCell> copy() const override
    {
        return std::make_unique<TemplateCell>(*this);
    }
    QString baseResourceImageName() const override { return QStringLiteral("galleryTemplate"); }
    double sideSegmentWidth() const override { return 6.0; }
    Bundle *resourcesBundle() const override { return galleryBundle(); }
};

// Shows the hover look it is told to, whatever the gallery's pointer does.
class ShownHoverButton : public VXTrackingButton
{
public:
    bool shownHover = false;

protected:
    bool event(QEvent *event) override
    {
        const bool result = VXTrackingButton::event(event);
        setHasHover(shownHover);
        return result;
    }
};

enum class Look
{
    Normal,
    Hover,
    Pressed,
    Disabled,
    On,
    Off,
    Mixed
};

const QList<QPair<QString, Look>> kLooks = {
    {QStringLiteral("normal"), Look::Normal},   {QStringLiteral("hover"), Look::Hover},
    {QStringLiteral("pressed"), Look::Pressed}, {QStringLiteral("disabled"), Look::Disabled},
    {QStringLiteral("on"), Look::On},           {QStringLiteral("off"), Look::Off},
    {QStringLiteral("mixed"), Look::Mixed},
};

QWidget *sample(const std::function<std::unique_ptr<ButtonCell>()> &make, Look look,
                const QString &title, uint selectionStyle = 0)
{
    auto *button = new ShownHoverButton;
    std::unique_ptr<ButtonCell> cell = make();
    cell->setAllowsMixedState(true);
    if (auto *radio = dynamic_cast<VXFlatRadioButtonCell *>(cell.get()))
        radio->setSelectionStyle(selectionStyle);
    const bool toggles = cell->drawsMark();
    button->setCell(std::move(cell));
    if (!toggles)
        button->setButtonType(ButtonCell::PushOnPushOffButton);
    button->setText(title);
    switch (look) {
    case Look::Hover:
        button->shownHover = true;
        button->setHasHover(true);
        break;
    case Look::Pressed:
        button->setDown(true);
        break;
    case Look::Disabled:
        button->setEnabled(false);
        if (toggles)
            button->setState(ButtonCell::OnState);
        break;
    case Look::On:
        button->setState(ButtonCell::OnState);
        break;
    case Look::Mixed:
        button->setState(ButtonCell::MixedState);
        break;
    default:
        break;
    }
    button->setAttribute(Qt::WA_TransparentForMouseEvents);
    button->setMinimumSize(button->sizeHint().expandedTo(QSize(toggles ? 120 : 96, 28)));
    return button;
}

} // namespace

QWidget *galleryButtonsSection()
{
    auto *section = new QWidget;
    auto *grid = new QGridLayout(section);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(8);
    const QList<std::tuple<QString, std::function<std::unique_ptr<ButtonCell>()>, uint>> rows = {
        {QStringLiteral("VXFlatButtonCell"),
         [] { return std::make_unique<VXFlatButtonCell>(ButtonCellCoding()); }, 0},
        {QStringLiteral("VXFlatBorderedButtonCell"),
         [] { return std::make_unique<VXFlatBorderedButtonCell>(); }, 0},
        {QStringLiteral("VXFlatCheckboxButtonCell"),
         [] { return std::make_unique<VXFlatCheckboxButtonCell>(ButtonCellCoding()); }, 0},
        {QStringLiteral("VXFlatRadioButtonCell"),
         [] { return std::make_unique<VXFlatRadioButtonCell>(); }, 0},
        {QStringLiteral("radio, selection style 1"),
         [] { return std::make_unique<VXFlatRadioButtonCell>(); }, 1},
        {QStringLiteral("radio, selection style 2"),
         [] { return std::make_unique<VXFlatRadioButtonCell>(); }, 2},
        {QStringLiteral("three images"), [] { return std::make_unique<SlicesCell>(); }, 0},
        {QStringLiteral("template"), [] { return std::make_unique<TemplateCell>(); }, 0},
    };
    for (int column = 0; column < kLooks.size(); ++column)
        grid->addWidget(new QLabel(kLooks.at(column).first), 0, column + 1, Qt::AlignCenter);
    for (int row = 0; row < rows.size(); ++row) {
        const auto &[name, make, style] = rows.at(row);
        grid->addWidget(new QLabel(name), row + 1, 0);
        for (int column = 0; column < kLooks.size(); ++column)
            grid->addWidget(sample(make, kLooks.at(column).second, QStringLiteral("Button"), style),
                            row + 1, column + 1);
    }
    return section;
}

static GallerySectionRegistration registration(60, QStringLiteral("Buttons"),
                                               &galleryButtonsSection);
