#pragma once

#include "Bundle.h"

namespace Quorvelle {

// The kit's own bundle: its data folder (share/quorvelle-kit beside the libraries' folder),
// or the libraries' folder when there is none. The classes of the kit's libraries belong to
// it. nullptr only when the library cannot find itself.
Bundle *kitBundle();

} // namespace Quorvelle
