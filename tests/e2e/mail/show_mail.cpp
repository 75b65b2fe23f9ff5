// Shows what the user sees while mailing, for a look at it: show_mail folder|busy|save|prepare
// [seconds]. The mail program is the stand-in of the tests; nothing leaves the machine.
#include <windows.h>

#include <ole2.h>

#include <cstdlib>
#include <string>
#include <thread>

#include "controls/mailing/DossierMail.h"
#include "controls/mailing/FileInTree.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "mail/win32/MakeMailRoads.h"
#include "tests/e2e/doubles/Factories.h"
#include "tests/e2e/doubles/SendingProgram.h"
#include "tests/e2e/viewer/Archive.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/SmallTiff.h"

using namespace kavidex;

int main(int count, char** arguments) {
    const std::string stage = count > 1 ? arguments[1] : "folder";
    const unsigned long seconds = count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 10;
    OleInitialize(nullptr);
    const auto& real = platform::TheWorkstation();
    tests::FakeWorkstation fake; // its folder, and the name of the mail program
    fake.shell.mailClient = "Microsoft Outlook";
    const platform::Workstation machine{real.registry, real.files,    real.clock, real.user,
                                        real.guids,    real.messages, real.busy,  fake.shell,
                                        real.log,      real.clipboard};
    tests::Archive archive(machine, fake.Path("store"));
    controls::ctrlTree tree(machine);
    const auto letter = archive.Document("doc", "Brief aan de heer Jansen", "bytes")->Id();
    const int scans = stage == "prepare" ? 300 : 0;
    for (int i = 0; i < scans; ++i)
        archive.Document("tif", "Gescande stukken " + std::to_string(i + 1),
                         tests::SmallTiff("abcdefghij"));
    tree.SetDbConnection(archive.database);
    tree.SetFullExpand(true);
    tree.SetTreeId(archive.tree.TreeId());
    const tests::ClassUnder<tests::SendingProgramDouble> program(L"outlook.Application");
    if (stage == "busy") tests::Script().appearsAt = 100000;
    controls::DossierMail sender(
        machine, mail::win32::MakeMailRoads(machine),
        [&](const controls::SentMail& mail) { controls::FileInTree(machine, tree, mail); });
    tree.SetMailSender(&sender);

    const HWND host = CreateWindowExW(0, L"#32770", L"Dossier", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                      40, 40, 760, 560, nullptr, nullptr, nullptr, nullptr);
    const auto window = controls::win32::MakeTreeWindow(tree, machine);
    window->Create(host, {0, 0, 500, 500});
    window->TakeFocus();
    std::thread([seconds] {
        Sleep(1000 * seconds);
        ExitProcess(0);
    }).detach();
    tree.NodeSelected(stage == "folder" || stage == "prepare" ? archive.folder->Id() : letter);
    tree.ChooseMenu({"mnuMail", 0, {}});
    return 0;
}
