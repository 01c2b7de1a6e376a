#pragma once

#include "ButtonCell.h"

#include <memory>

// The base of the kit's artwork cells: can be made as a copy of a standard cell's settings
// and asks its button whether the mouse is over it.
class VXButtonCell : public ButtonCell
{
public:
    VXButtonCell() = default;
    explicit VXButtonCell(const ButtonCellCoding &coding) : ButtonCell(coding) {}

    // A new cell of class Cell carrying the source cell's settings, so a button laid out
    // with a standard cell can take a kit cell without losing its configuration.
    template <typename Cell = VXButtonCell>
    static std::unique_ptr<Cell> initWithButtonCell(const ButtonCell &source)
    {
        auto cell = std::make_unique<Cell>();
        cell->copySettingsFromButtonCell(source);
        return cell;
    }

    std::unique_ptr<ButtonCell> copy() const override;

    // The owning VXTrackingButton's hover; no hover in any other view.
    bool hasHover() const;

protected:
    VXButtonCell(const VXButtonCell &) = default;
    void copySettingsFromButtonCell(const ButtonCell &source);
};
