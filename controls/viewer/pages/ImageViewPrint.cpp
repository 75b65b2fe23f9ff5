// Pages on paper, as they are shown.
#include <numeric>

#include "controls/print/PagePrinter.h"
#include "controls/viewer/pages/ImageView.h"
#include "controls/viewer/pages/ShownPages.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

void ImageView::Print() {
    if (!lclDocument) return;
    std::vector<int> pages(static_cast<std::size_t>(Count()));
    std::iota(pages.begin(), pages.end(), 1);
    PrintThese(pages, Count());
}

// They are chosen already: no range of them is asked for.
void ImageView::PrintSelectedThumbs() {
    const auto pages = SelectedPages();
    if (lclDocument && !pages.empty()) PrintThese(pages, 0);
}

void ImageView::PrintThese(const std::vector<int>& pages, int choosable) {
    const auto& machine = lclFrame.Machine();
    const auto title = lclDescription;
    const auto caption = lclFrame.Text("Afdrukken");
    ShownPages source(*lclDocument, pages,
                      MarksShown() ? imaging::annotations::MakeTextPainter() : nullptr);
    PagesPrinted printed;
    lclFrame.Undisturbed([&] {
        Operation operation(lclPrinting);
        if (!operation)
            throw platform::Error(platform::errors::fail,
                                  lclFrame.Text("Er loopt nog een andere bewerking"));
        const auto choice = machine.shell.Printers().Ask(choosable);
        if (!choice) return;
        operation.Show(caption, lclFrame.Text("Bezig met afdrukken van $%$.", {title}),
                       lclFrame.Text("Annuleren"));
        printed = PrintPages(machine.shell.Printers(), *choice, title, source,
                             [&](int done, int total) { return operation.Step(done, total); });
    });
    if (!printed.damage.empty())
        lclFrame.Ask("Niet volledig afgedrukt: $%$", "Afdrukken", platform::Buttons::Ok,
                     platform::Icon::Exclamation, {"\r\n" + title + ": " + printed.damage});
}

} // namespace kavidex::controls
