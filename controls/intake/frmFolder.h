// Asks for a folder of the open dossier.
#pragma once

#include "controls/intake/IntakeSite.h"

namespace kavidex::controls {

// The selected folder stands chosen. Null when the user cancels, or nothing can be shown.
ItemPtr ChooseFolder(IntakeSite& site);

} // namespace kavidex::controls
