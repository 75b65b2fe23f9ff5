#include "platform/BusyDialog.h"

namespace kavidex::platform {

BusyScope::BusyScope(BusyDialog& dialog, std::string_view caption, std::string_view text,
                     std::string_view stop)
    : lclDialog(dialog) {
    lclDialog.Show(caption, text);
    if (lclDialog.lclScopes++ == 0) lclDialog.OfferStop(stop);
    lclDialog.PumpMessages();
}

BusyScope::~BusyScope() {
    if (--lclDialog.lclScopes == 0) lclDialog.Close();
}

void BusyScope::Text(std::string_view caption, std::string_view text) {
    lclDialog.Show(caption, text);
    lclDialog.PumpMessages();
}

void BusyScope::Progress(int done, int total) {
    lclDialog.Progress(done, total);
    lclDialog.PumpMessages();
}

} // namespace kavidex::platform
