// What leaves the dossier: documents on paper, and by mail.
#include <algorithm>

#include "controls/print/PagePrinter.h"
#include "controls/print/PdfPages.h"
#include "controls/print/TiffPages.h"
#include "controls/tree/MailSender.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

// --- Printing -----------------------------------------------------------------------------------

struct ctrlTree::Printing {
    Printing(ctrlTree& control)
        : tree(control), machine(tree.lclWorkstation), operation(*tree.lclLock) {}

    ctrlTree& tree;
    const platform::Workstation& machine;
    Operation operation;
    std::optional<platform::PrintChoice> choice;
    bool asked = false;
    std::vector<std::string> failed, damaged; // lines for the user

    // Once for all documents; false: the user cancelled.
    bool Choose(int pages) {
        if (!asked) choice = machine.shell.Printers().Ask(pages);
        asked = true;
        return choice.has_value();
    }

    // False: the user stopped it.
    bool Pages(PrintSource& source, const std::string& title) {
        operation.Show(tree.Text("Afdrukken"), tree.Text("Bezig met afdrukken van $%$.", {title}),
                       tree.Text("Annuleren"));
        const auto printed =
            PrintPages(machine.shell.Printers(), *choice, title, source,
                       [&](int done, int total) { return operation.Step(done, total); });
        if (!printed.damage.empty()) {
            damaged.push_back(title + ": " + printed.damage);
            machine.log.Write("Print", damaged.back());
        }
        return !printed.stopped;
    }

    // The program of its type, else ours where we can draw it.
    bool ByProgram(const model::DocumentFile& file, const std::string& title) {
        try {
            machine.shell.PrintDefault(file.path);
            return true;
        } catch (const platform::Error& error) {
            if (!platform::EqualNoCase(file.type, "pdf")) throw;
            machine.log.Write("Print", error.what());
        }
        PdfPages pages(machine.files.ReadAll(file.path));
        return Choose(pages.Count()) && Pages(pages, title);
    }

    bool One(const model::DocumentFile& file, const std::string& title) {
        if (!IsImage(file)) return ByProgram(file, title);
        TiffPages pages(machine.files, file.path, Texts());
        return Choose(pages.Count()) && Pages(pages, title);
    }

    std::unique_ptr<imaging::annotations::TextPainter> Texts() const {
        return tree.lclRights.Has("ViewAnnotations") ? imaging::annotations::MakeTextPainter()
                                                     : nullptr;
    }

    static bool IsImage(const model::DocumentFile& file) {
        return platform::EqualNoCase(file.type, "tif") || platform::EqualNoCase(file.type, "tiff");
    }
};

void ctrlTree::Print() {
    const std::weak_ptr<void> alive = lclAlive;
    std::vector<std::string> failed, damaged;
    const bool whole = Guarded("ctrlTree", [&] {
        if (!lclWorkstation.shell.HasPrinters()) {
            lclWorkstation.messages.Show(
                {Text("Er zijn geen printers geïnstalleerd op deze machine."), Text("Afdrukken"),
                 platform::Buttons::Ok, platform::Icon::Exclamation});
            return;
        }
        const auto connection = lclConnection; // the items' own, whatever the host does meanwhile
        const auto items =
            ChosenDocuments(Text("Wilt u de inhoud van deze map afdrukken?"), Text("Afdrukken"));
        Printing printing(*this);
        if (!printing.operation)
            throw platform::Error(platform::errors::fail,
                                  Text("Er loopt nog een andere bewerking"));
        model::DocumentFiles look(lclWorkstation, connection);
        // Several documents have no pages in common of which some could be chosen.
        if (items.size() > 1 && std::any_of(items.begin(), items.end(), [](const ItemPtr& item) {
                return platform::EqualNoCase(item->ItemType(), "tif");
            }))
            if (!printing.Choose(0)) return;
        for (const auto& item : items) {
            const auto title = item->Description();
            try {
                const auto file = look.Of(*item);
                if (!file.HasFile()) throw platform::Error(file.number, file.error);
                if (!printing.One(file, title)) break;
            } catch (const std::exception& error) {
                printing.failed.push_back(title + ": " + error.what());
                lclWorkstation.log.Write("Print", printing.failed.back());
            }
            if (alive.expired()) return;
        }
        failed = printing.failed;
        damaged = printing.damaged;
    });
    if (!whole || alive.expired()) return;
    std::string text;
    if (!failed.empty()) text = Text("Niet afgedrukt: $%$", {"\r\n" + Listed(failed)});
    if (!damaged.empty())
        text += (text.empty() ? "" : "\r\n") +
                Text("Niet volledig afgedrukt: $%$", {"\r\n" + Listed(damaged)});
    if (!text.empty())
        lclWorkstation.messages.Show(
            {text, Text("Afdrukken"), platform::Buttons::Ok, platform::Icon::Exclamation});
}

// Of folders the contents where the user wants them. Under the question the host may open another
// dossier: what is chosen is known before.
std::vector<ItemPtr> ctrlTree::ChosenDocuments(const std::string& question,
                                               const std::string& caption) const {
    auto ids = SelectedIds();
    const auto all = DocumentsBelow(ids);
    const auto folders = std::erase_if(ids, [&](std::int32_t id) {
        const auto item = GetNode(id);
        return item && item->AllowChildren();
    });
    if (folders == 0) return all;
    const auto alone = DocumentsBelow(ids);
    return lclWorkstation.messages.Show({question, caption, platform::Buttons::YesNo,
                                         platform::Icon::Question}) == platform::Answer::Yes
               ? all
               : alone;
}

bool ctrlTree::HasDocuments(const std::vector<std::int32_t>& ids) const {
    return std::any_of(ids.begin(), ids.end(), [&](std::int32_t id) {
        const auto item = GetNode(id);
        return item && (!item->AllowChildren() ||
                        (item->ChildCollection() && item->ChildCollection()->Count() > 0));
    });
}

// --- Mail ---------------------------------------------------------------------------------------

void ctrlTree::Mail(bool asPdf) {
    const std::weak_ptr<void> alive = lclAlive;
    try {
        if (!lclMail) return;
        MailOrder order{lclState.EmailAddress, {}, asPdf};
        order.marks = lclRights.Has("ViewAnnotations");
        order.connection = lclConnection;
        order.lock = lclLock;
        order.translator = lclTranslator;
        SentMail mail{{}, lclTree, FolderAt(lclSelected)};
        order.documents =
            ChosenDocuments(Text("Wilt u de inhoud van deze map toevoegen aan deze e-mail?"),
                            Text("Bevestigen toevoegen items aan e-mail"));
        if (order.documents.empty()) return;
        const auto result = lclMail->Send(order);
        if (alive.expired()) return;
        if (result.outcome == MailOutcome::LogonFailed)
            lclWorkstation.messages.Show({Text("Aanmelden voor email mislukt!"), Text("Mailen"),
                                          platform::Buttons::Ok, platform::Icon::Information});
        else if (result.outcome == MailOutcome::Sent && !result.sent.empty()) {
            mail.path = result.sent;
            KeepSentMail(std::move(mail));
        }
    } catch (const std::exception& error) {
        if (!alive.expired()) ShowError("Error sending mail", {}, error);
    }
}

bool ctrlTree::Shows(const model::clsTree& dossier) const {
    return lclTree && lclTree->TreeId() == dossier.TreeId() &&
           lclTree->DbConnection() == dossier.DbConnection();
}

void ctrlTree::KeepSentMail(SentMail mail) {
    if (lclWorkstation.messages.Show(
            {Text("Wilt u de verzonden mail opslaan?"), Text("Bevestigen opslaan verzonden mail"),
             platform::Buttons::YesNo, platform::Icon::Question}) != platform::Answer::Yes)
        return;
    if (Shows(*mail.dossier)) mail.dossier = lclTree;
    const auto name = platform::Trim(
        platform::GetRegSetting(lclWorkstation, platform::applicationName, "Mail", "Folder", ""));
    ItemPtr folder;
    if (!name.empty())
        Walk(mail.dossier->Item(), 0, [&](const ItemPtr& item, std::int32_t) {
            if (!folder && item->Id() > 0 && item->AllowChildren() &&
                platform::EqualNoCase(item->DescriptionText(), name))
                folder = item;
        });
    if (!folder && !name.empty())
        lclWorkstation.log.Write("Mail", "There is no folder \"" + name +
                                             "\": the sent mail goes to the selected one");
    if (folder) mail.folder = folder->Id();
    lclMail->File(mail);
}

} // namespace kavidex::controls
