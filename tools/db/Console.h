// A workstation for a program without windows: what long work shows is printed, messages are
// errors.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/Texts.h"
#include "platform/BusyDialog.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"

namespace kavidex::db {

// The texts of the system in English, whatever language they are written in.
std::string English(std::string_view text, const std::vector<std::string>& values = {});

class ConsoleMessages : public platform::Messages {
public:
    platform::Answer Show(const platform::Message& message) override;
    int shown = 0;
};

class ConsoleBusy : public platform::BusyDialog {
public:
    void Show(std::string_view caption, std::string_view text) override;
    void Progress(int, int) override {}
    void Close() override {}
    void OfferStop(std::string_view) override {}
    bool StopAsked() override { return false; }

private:
    void Pump(bool) override {}
    std::string lclLast;
};

struct Console {
    ConsoleMessages messages;
    ConsoleBusy busy;
    const platform::Workstation& real = platform::TheWorkstation();
    platform::Workstation workstation{real.registry, real.files,    real.clock, real.user,
                                      real.guids,    messages,      busy,       real.shell,
                                      real.log,      real.clipboard};
};

} // namespace kavidex::db
