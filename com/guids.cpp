// The GUIDs of the contract, defined once.
#include <initguid.h>

#include "kavidex_idl.h"
