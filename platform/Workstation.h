// Everything an object may need of the machine, handed to it at construction. Nothing reaches
// around it; tests build one from fakes.
#pragma once

namespace kavidex::platform {

class BusyDialog;
class Clipboard;
class Clock;
class Files;
class Guids;
class Log;
class Messages;
class Registry;
class Shell;
class User;

struct Workstation {
    Registry& registry;
    Files& files;
    Clock& clock;
    User& user;
    Guids& guids;
    Messages& messages;
    BusyDialog& busy;
    Shell& shell;
    Log& log;
    Clipboard& clipboard;
};

// The real machine: one object a process, made on first use.
const Workstation& TheWorkstation();

} // namespace kavidex::platform
