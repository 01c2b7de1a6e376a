#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The base of the kit's artwork cells: it can be made from a standard cell's settings and
 * asks its button whether the mouse is over it.
 */
class QV_WIDGETS_EXPORT VXButtonCell : public Quorvelle::ButtonCell
{
public:
    /** A cell made in code, as ButtonCell(). */
    VXButtonCell();
    /** A cell decoded from a window description's settings. */
    explicit VXButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXButtonCell() override;

    /**
     * A new cell of class Cell carrying every setting of source, so a button laid out with a
     * standard cell can take a kit cell without losing its configuration.
     */
    template <typename Cell = VXButtonCell>
    static std::unique_ptr<Cell> initWithButtonCell(const Quorvelle::ButtonCell &source)
    {
        auto cell = std::make_unique<Cell>();
        cell->copySettingsFromButtonCell(source);
        return cell;
    }

    /** A copy of this cell with all its settings. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    /** Whether the mouse is over the cell's VXTrackingButton; false in any other view. */
    bool hasHover() const;

protected:
    /** Copies every setting; for copy(). */
    VXButtonCell(const VXButtonCell &other);
    /** Takes every setting of source (state, titles, images, masks, font, target, ...). */
    void copySettingsFromButtonCell(const Quorvelle::ButtonCell &source);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
