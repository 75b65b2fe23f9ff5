#include "controls/viewer/PrintShown.h"

#include "controls/print/PagePrinter.h"
#include "platform/Error.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

void PrintShown(const ViewerFrame& frame, OperationLock& lock, const std::string& title,
                PrintSource& source, int pages) {
    const auto& machine = frame.Machine();
    PagesPrinted printed;
    frame.Undisturbed([&] {
        Operation operation(lock);
        if (!operation)
            throw platform::Error(platform::errors::fail,
                                  frame.Text("Er loopt nog een andere bewerking"));
        const auto choice = machine.shell.Printers().Ask(pages);
        if (!choice) return;
        operation.Show(frame.Text("Afdrukken"), frame.Text("Bezig met afdrukken van $%$.", {title}),
                       frame.Text("Annuleren"));
        printed = PrintPages(machine.shell.Printers(), *choice, title, source,
                             [&](int done, int total) { return operation.Step(done, total); });
    });
    if (!printed.damage.empty())
        frame.Ask("Niet volledig afgedrukt: $%$", "Afdrukken", platform::Buttons::Ok,
                  platform::Icon::Exclamation, {"\r\n" + title + ": " + printed.damage});
}

void PrintByProgram(const ViewerFrame& frame, const ShownDocument& document) {
    frame.Machine().shell.PrintDefault(document.Path());
}

} // namespace kavidex::controls
