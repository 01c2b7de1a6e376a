#include "VXButtonCell.h"

#include "VXTrackingButton.h"

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;

// Nothing yet: the place for state of the kit's cells that every artwork cell shares.
struct VXButtonCell::Private
{
};

VXButtonCell::VXButtonCell() : d(std::make_unique<Private>()) {}

VXButtonCell::VXButtonCell(const ButtonCellCoding &coding)
    : ButtonCell(coding), d(std::make_unique<Private>())
{
}

VXButtonCell::~VXButtonCell() = default;

VXButtonCell::VXButtonCell(const VXButtonCell &other)
    : ButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

std::unique_ptr<ButtonCell> VXButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXButtonCell(*this));
}

bool VXButtonCell::hasHover() const
{
    const auto *button = qobject_cast<const VXTrackingButton *>(controlView());
    return button ? button->hasHover() : false;
}

void VXButtonCell::copySettingsFromButtonCell(const ButtonCell &source)
{
    // The order is the rule: the object value comes after the state and has the last word
    // on it, and enabledness is set after everything else.
    setTarget(source.target());
    setAction(source.action());
    setAllowsMixedState(source.allowsMixedState());
    setState(source.state());
    setImage(source.image());
    setAlternateImage(source.alternateImage());
    setAttributedTitle(source.attributedTitle());
    setAttributedAlternateTitle(source.attributedAlternateTitle());
    setAlignment(source.alignment());
    setBezelStyle(source.bezelStyle());
    setGradientType(source.gradientType());
    setObjectValue(source.objectValue());
    setShowsStateBy(source.showsStateBy());
    setHighlightsBy(source.highlightsBy());
    setImagePosition(source.imagePosition());
    setImageScaling(source.imageScaling());
    setControlSize(source.controlSize());
    setFont(source.font());
    setBezeled(source.isBezeled());
    setBordered(source.isBordered());
    setBackgroundStyle(BackgroundStyleRaised);
    setEnabled(source.isEnabled());
}
