// Folders of the disk that cannot be taken in as they are.
#include <filesystem>

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

} // namespace kavidex::controls
