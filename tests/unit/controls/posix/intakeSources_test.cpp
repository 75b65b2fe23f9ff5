// Folders and saved mails of the disk that lack something, or hold too much.
#include <filesystem>

#include "controls/intake/MailDrop.h"
#include "tests/fakes/CompoundFile.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {

TEST_F(Binder, ADroppedFolderIsTakenInWithoutLinksAndWithoutWhatCannotBeRead) {
    ASSERT_EQ(Open("key"), 0);
    for (const char* folder : {"Post", "Post\\Oud", "Post\\Dicht"})
        machine.files.CreateDirectories(machine.Path(folder));
    File("Post\\Oud\\a.txt");
    File("Post\\Dicht\\b.txt");
    std::filesystem::create_directory_symlink(machine.Native(machine.Path("Post")),
                                              machine.Native(machine.Path("Post\\Oud\\Terug")));
    machine.files.refused = "List " + machine.Path("Post\\Dicht");
    DropData data;
    data.hasFiles = true;
    data.files = {machine.Path("Post")};
    binder->treCorr().Dropped(data, Root());
    std::string names;
    for (const auto& item : binder->treCorr().AllItems()) names += item->Description() + " ";
    EXPECT_EQ(names, "Post Oud a ");
    EXPECT_TRUE(Told(machine.Path("Post\\Oud\\Terug") + ": een koppeling naar een andere map"));
    EXPECT_TRUE(Told(machine.Path("Post\\Dicht") + ": geen toegang"));
}

TEST_F(Binder, ASavedMailWithoutNamesSaysThatTheyWereNotRetrieved) {
    const auto info = [&](const tests::MailPart& mail) {
        const auto path =
            File("mail.msg", tests::CompoundFileWriter::Write(tests::MailPart(mail).Whole()));
        return MailInfoOf(machine.workstation, nullptr, path);
    };
    tests::MailPart mail(32);
    mail.Wide("0037", "Offerte");
    EXPECT_EQ(info(mail).sendTo, "Not retrieved");
    EXPECT_EQ(info(mail).recievedFrom, "Not retrieved");
    EXPECT_TRUE(machine.log.Has("MailInfo", "Error retrieving RecievedFrom"));
    mail.Wide("0C1A", "Piet").Wide("0E04", "An; Bo");
    EXPECT_EQ(info(mail).sendTo, "An; Bo");
    EXPECT_EQ(info(mail).recievedFrom, "Piet");
}

} // namespace kavidex::controls
