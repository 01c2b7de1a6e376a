// The cell classes a window description may name.
#include "ButtonCell.h"
#include "VXButtonCell.h"
#include "VXFlatBorderedButtonCell.h"
#include "VXFlatButtonCell.h"
#include "VXFlatCheckboxButtonCell.h"
#include "VXFlatRadioButtonCell.h"
#include "VXGeneralButtonCell.h"

namespace Quorvelle {

std::unique_ptr<ButtonCell> ButtonCell::cellWithClassName(const QString &className,
                                                          const ButtonCellCoding &coding)
{
    if (className == QLatin1String("Quorvelle::ButtonCell"))
        return std::make_unique<ButtonCell>(coding);
    if (className == QLatin1String("VXButtonCell"))
        return std::make_unique<VXButtonCell>(coding);
    if (className == QLatin1String("VXGeneralButtonCell"))
        return std::make_unique<VXGeneralButtonCell>(coding);
    if (className == QLatin1String("VXFlatButtonCell"))
        return std::make_unique<VXFlatButtonCell>(coding);
    if (className == QLatin1String("VXFlatBorderedButtonCell"))
        return std::make_unique<VXFlatBorderedButtonCell>(coding);
    if (className == QLatin1String("VXFlatCheckboxButtonCell"))
        return std::make_unique<VXFlatCheckboxButtonCell>(coding);
    if (className == QLatin1String("VXFlatRadioButtonCell"))
        return std::make_unique<VXFlatRadioButtonCell>(coding);
    return nullptr;
}

} // namespace Quorvelle
