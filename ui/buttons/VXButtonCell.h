#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// The base of the kit's artwork cells: can be made as a copy of a standard cell's settings
// and asks its button whether the mouse is over it.
class QV_WIDGETS_EXPORT VXButtonCell : public Quorvelle::ButtonCell
{
public:
    VXButtonCell();
    explicit VXButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXButtonCell() override;

    // A new cell of class Cell carrying the source cell's settings, so a button laid out
    // with a standard cell can take a kit cell without losing its configuration.
    template <typename Cell = VXButtonCell>
    static std::unique_ptr<Cell> initWithButtonCell(const Quorvelle::ButtonCell &source)
    {
        auto cell = std::make_unique<Cell>();
        cell->copySettingsFromButtonCell(source);
        return cell;
    }

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    // The owning VXTrackingButton's hover; no hover in any other view.
    bool hasHover() const;

protected:
    VXButtonCell(const VXButtonCell &other);
    void copySettingsFromButtonCell(const Quorvelle::ButtonCell &source);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
