#include "controls/common/win32/GdiObject.h"

namespace kavidex::controls::win32 {

int& GdiObjectsAlive() {
    static int count = 0;
    return count;
}

} // namespace kavidex::controls::win32
