#include "platform/Files.h"

#include <gtest/gtest.h>

#include "platform/FileLog.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::platform {

using tests::FakeWorkstation;

namespace {

// The number of the Error that the call throws; 0 when it throws none. Its text names the path.
template <class Call>
std::int32_t Failure(Call call, std::string_view path) {
    try {
        call();
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find(path), std::string::npos) << error.what();
        return error.Number();
    }
    return 0;
}

struct FilesTest : testing::Test {
    FakeWorkstation machine;
    Files& files = machine.files;
    std::string Path(std::string_view name) { return machine.Path(name); }
    std::vector<std::string> All() { return files.List(machine.Folder(), "*", true); }
};

} // namespace

TEST(Paths, PartsOfAPath) {
    EXPECT_EQ(JoinPath("C:\\a", "b"), "C:\\a\\b");
    EXPECT_EQ(JoinPath("C:\\a\\", "b"), "C:\\a\\b");
    EXPECT_EQ(JoinPath("", "b"), "b");
    EXPECT_EQ(FileName("C:\\a.b\\c.tif"), "c.tif");
    EXPECT_EQ(FolderOf("C:\\a\\c.tif"), "C:\\a");
    EXPECT_EQ(FolderOf("c.tif"), "");
    EXPECT_EQ(Extension("C:\\a.b\\c"), "");
    EXPECT_EQ(Extension("x.tar.GZ"), "GZ");
    EXPECT_EQ(Extension(".hidden"), "");
    EXPECT_EQ(WithoutExtension("x.tar.gz"), "x.tar");
    EXPECT_EQ(WithoutExtension("a.b\\c"), "a.b\\c");
}

TEST(Paths, PatternsMatchWithoutCase) {
    EXPECT_TRUE(MatchesPattern("SCAN001.TIF", "scan*.tif"));
    EXPECT_TRUE(MatchesPattern("é.TIF", "É.t?f"));
    EXPECT_TRUE(MatchesPattern("é", "?"));
    EXPECT_TRUE(MatchesPattern("zonder punt", "*.*"));
    EXPECT_TRUE(MatchesPattern("a.b.tif", "*.tif"));
    EXPECT_FALSE(MatchesPattern("a.tiff", "*.tif"));
    EXPECT_FALSE(MatchesPattern("", "?"));
    EXPECT_TRUE(MatchesPattern("aXbXc", "a*b*c"));
    EXPECT_FALSE(MatchesPattern("aXbX", "a*b*c"));
}

TEST_F(FilesTest, CopyIsWholeAndRefusesOrReplacesAnExistingTarget) {
    const std::string source = Path("bron é 文件 📁.tif"), target = Path("doel 'x' 50%.tif");
    const std::string bytes = std::string(700'000, 'x') + std::string("\0\r\n\xff", 4);
    files.WriteAll(source, bytes);
    files.Copy(source, target, true);
    EXPECT_EQ(files.ReadAll(target), bytes);
    EXPECT_EQ(files.Size(target), bytes.size());

    files.WriteAll(source, "nieuw");
    EXPECT_EQ(Failure([&] { files.Copy(source, target, true); }, target), errors::alreadyExists);
    EXPECT_EQ(files.ReadAll(target), bytes);
    files.Copy(source, target, false);
    EXPECT_EQ(files.ReadAll(target), "nieuw");
    EXPECT_EQ(All().size(), 2u) << "a temporary file stayed behind";
}

TEST_F(FilesTest, ACopyAsideIsWholeAndTakesItsNameLater) {
    const std::string source = Path("bron.tif"), bytes(300'000, 'x');
    files.WriteAll(source, bytes);
    files.SetAttributes(source, attributes::readOnly);
    const std::string first = files.CopyAside(source, machine.Folder());
    const std::string second = files.CopyAside(source, machine.Folder());
    EXPECT_NE(first, second);
    EXPECT_EQ(files.ReadAll(first), bytes);
    files.Rename(first, Path("doel.tif"));
    EXPECT_FALSE(files.FileExists(first));
    EXPECT_EQ(Failure([&] { files.Rename(second, Path("doel.tif")); }, Path("doel.tif")),
              errors::alreadyExists);
    EXPECT_EQ(files.ReadAll(Path("doel.tif")), bytes);
    EXPECT_TRUE(files.Attributes(Path("doel.tif")) & attributes::readOnly);
    EXPECT_NE(Failure([&] { files.CopyAside(source, Path("geen")); }, Path("geen")), 0);
    EXPECT_EQ(Failure([&] { files.CopyAside(Path("niet"), machine.Folder()); }, Path("niet")),
              errors::notFound);
    EXPECT_EQ(All().size(), 3u);
}

TEST_F(FilesTest, ComparesFilesByteForByte) {
    for (const std::size_t size : {0, 1, 256 * 1024, 256 * 1024 + 1, 700'000}) {
        std::string bytes(size, 'x');
        files.WriteAll(Path("een"), bytes);
        files.WriteAll(Path("twee"), bytes);
        EXPECT_TRUE(files.SameBytes(Path("een"), Path("twee"))) << size;
        files.WriteAll(Path("twee"), bytes + "x");
        EXPECT_FALSE(files.SameBytes(Path("een"), Path("twee"))) << size;
        if (size == 0) continue;
        bytes.back() = 'y';
        files.WriteAll(Path("twee"), bytes);
        EXPECT_FALSE(files.SameBytes(Path("een"), Path("twee"))) << size;
    }
    EXPECT_EQ(Failure([&] { files.SameBytes(Path("een"), Path("niet")); }, Path("niet")),
              errors::notFound);
}

TEST_F(FilesTest, KnowsOneFileUnderEveryName) {
    const std::string path = Path("een"), folder = machine.Folder();
    files.WriteAll(path, "abc");
    files.WriteAll(Path("twee"), "abc");
    std::vector<std::string> aliases = {path, folder + "\\\\een", folder + "\\.\\een"};
#ifdef _WIN32
    aliases.push_back("\\\\?\\" + path);
    aliases.push_back(Path("EEN"));
#endif
    for (const std::string& alias : aliases) EXPECT_TRUE(files.SameFile(alias, path)) << alias;
    EXPECT_FALSE(files.SameFile(Path("twee"), path)) << "the same bytes are another file";
    EXPECT_EQ(Failure([&] { files.SameFile(path, Path("niet")); }, Path("niet")), errors::notFound);
}

TEST(Paths, NamesOfDevicesAreKnown) {
    for (const char* const name :
         {"CON", "nul", "Aux.txt", "com1", "LPT9.a.b", "con .txt", "COM\xC2\xB9", "CONIN$"})
        EXPECT_TRUE(IsDeviceName(name)) << name;
    for (const char* const name : {"", "conto", "com", "com10", "a.con", "lptx", "nul_.txt"})
        EXPECT_FALSE(IsDeviceName(name)) << name;
}

TEST_F(FilesTest, FailuresNameThePathAndLeaveNothingBehind) {
    const std::string missing = Path("niet.tif"), file = Path("a.tif");
    files.WriteAll(file, "a");
    EXPECT_EQ(Failure([&] { files.Copy(missing, Path("b.tif"), false); }, missing),
              errors::notFound);
    EXPECT_EQ(Failure([&] { files.ReadAll(missing); }, missing), errors::notFound);
    EXPECT_EQ(Failure([&] { files.Remove(missing); }, missing), errors::notFound);
    EXPECT_EQ(Failure([&] { files.Size(missing); }, missing), errors::notFound);
    EXPECT_NE(Failure([&] { files.Copy(file, Path("geen\\map\\b.tif"), false); }, "geen"), 0);
    EXPECT_NE(Failure([&] { files.WriteAll(machine.Folder(), "x"); }, machine.Folder()), 0);
    EXPECT_NE(Failure([&] { files.ReadAll(""); }, ""), 0);
    EXPECT_NE(Failure([&] { files.Remove(std::string("a\0b", 3)); }, "a"), 0);
    EXPECT_EQ(All(), std::vector<std::string>{"a.tif"});
}

TEST_F(FilesTest, AFileThatIsReadIsReplacedAndDeletedMeanwhile) {
    const std::string path = Path("scan.tif"), other = Path("nieuw.tif");
    files.WriteAll(path, "oud");
    files.WriteAll(other, "kopie");
    {
        const auto reader = files.Reader(path), second = files.Reader(path);
        files.WriteAll(path, "nieuw");
        EXPECT_EQ(files.ReadAll(path), "nieuw");
        files.Copy(other, path, false);
        EXPECT_EQ(files.ReadAll(path), "kopie");
        char bytes[8] = "";
        EXPECT_EQ(reader->Read(0, bytes, sizeof bytes), 3u);
        EXPECT_EQ(std::string(bytes), "oud") << "whoever reads it goes on with the old one";
        const auto again = files.Reader(path);
        files.Remove(path);
    }
    EXPECT_EQ(All(), std::vector<std::string>{"nieuw.tif"}) << "nothing stays beside it";
}

TEST_F(FilesTest, AReadOnlyFileIsProtectedUntilItsAttributeGoes) {
    const std::string path = Path("vast.tif");
    files.WriteAll(path, "oud");
    files.SetAttributes(path, attributes::readOnly);
    EXPECT_TRUE(files.Attributes(path) & attributes::readOnly);
    EXPECT_EQ(Failure([&] { files.Remove(path); }, path), errors::accessDenied);
    EXPECT_EQ(Failure([&] { files.WriteAll(path, "x"); }, path), errors::accessDenied);
    EXPECT_EQ(files.ReadAll(path), "oud");
    files.SetAttributes(path, attributes::normal);
    EXPECT_FALSE(files.Attributes(path) & attributes::readOnly);
    files.Remove(path);
    EXPECT_FALSE(files.FileExists(path));
}

TEST_F(FilesTest, FoldersAtAnyLengthAndTheirLists) {
    std::string deep = machine.Folder();
    for (int i = 0; i < 12; ++i)
        deep = JoinPath(deep, "een lange mapnaam met é erin " + std::to_string(i));
    ASSERT_GT(deep.size(), 300u);
    files.CreateDirectories(deep);
    files.CreateDirectories(deep); // again
    EXPECT_TRUE(files.DirectoryExists(deep));
    EXPECT_FALSE(files.FileExists(deep));
    EXPECT_TRUE(files.Attributes(deep) & attributes::directory);
    for (const char* name : {"b.TIF", "A.tif", "c.tiff", "c.txt"})
        files.WriteAll(JoinPath(deep, name), name);
    files.CreateDirectories(JoinPath(deep, "map.tif"));
    EXPECT_EQ(files.List(deep, "*.tif"), (std::vector<std::string>{"A.tif", "b.TIF"}));
    EXPECT_EQ(files.List(deep, "*.tif", true),
              (std::vector<std::string>{"A.tif", "b.TIF", "map.tif"}));
    EXPECT_TRUE(files.List(JoinPath(deep, "nergens"), "*").empty());
    files.Copy(JoinPath(deep, "c.txt"), JoinPath(deep, "d.txt"), true);
    EXPECT_EQ(files.ReadAll(JoinPath(deep, "d.txt")), "c.txt");

    files.WriteAll(Path("bestand"), "");
    EXPECT_NE(Failure([&] { files.CreateDirectories(Path("bestand\\map")); }, "bestand"), 0);
}

TEST_F(FilesTest, ALockKeepsOthersOutAndGoesWithItsHolder) {
    files.CreateDirectories(Path("map.tif"));
    EXPECT_FALSE(files.Holds(machine.Folder(), "*.tif")) << "a folder is no file";
    EXPECT_FALSE(files.Holds(Path("nergens"), "*"));
    const auto path = Path("slot.tif");
    auto held = files.Lock(path);
    ASSERT_TRUE(held);
    EXPECT_FALSE(files.Lock(path));
    EXPECT_TRUE(files.Holds(machine.Folder(), "*.TIF"));
    held.reset();
    EXPECT_FALSE(files.FileExists(path));
    EXPECT_TRUE(files.Lock(path));
    EXPECT_NE(Failure([&] { files.Lock(Path("nergens\\slot")); }, "nergens"), 0);
}

TEST_F(FilesTest, ANameOfTheLongestAllowedLengthCanBeWritten) {
    const std::string path = Path(std::string(251, 'n') + ".tif");
    files.WriteAll(path, "x");
    EXPECT_EQ(files.ReadAll(path), "x");
}

TEST_F(FilesTest, TheLogWritesOneLineAnEntryAndStaysBounded) {
    const std::string path = Path("kavidex.log");
    FileLog log(machine.registry, machine.clock, files);
    log.Write("nergens", "off");
    EXPECT_TRUE(All().empty());
    machine.registry.Write("Kavidex", "DebugFlags", "LogFile", path);
    log.Write("fncA", "een\r\ntwee é");
    log.Write("fncB", "drie");
    EXPECT_EQ(files.ReadAll(path), "2026-11-15 14:05:09.000 fncA: een  twee é\r\n"
                                   "2026-11-15 14:05:09.000 fncB: drie\r\n");

    for (int i = 0; i < 2; ++i) {
        files.WriteAll(path, std::string(FileLog::largest, '.'));
        log.Write("fncC", "vol");
        EXPECT_LT(files.Size(path), 200u);
        EXPECT_EQ(files.Size(path + ".old"), FileLog::largest);
    }
    FileLog own(machine.registry, machine.clock, files, Path("eigen"));
    machine.registry.Write("Kavidex", "DebugFlags", "LogFile", "");
    own.Write("fncD", "switched off");
    EXPECT_FALSE(files.DirectoryExists(Path("eigen")));
    tests::FakeRegistry unset;
    FileLog(unset, machine.clock, files, Path("eigen")).Write("fncD", "on by default");
    EXPECT_EQ(files.ReadAll(Path("eigen\\Kavidex.log")),
              "2026-11-15 14:05:09.000 fncD: on by default\r\n");
    machine.registry.Write("Kavidex", "DebugFlags", "LogFile", Path("geen\\map\\x.log"));
    log.Write("fncD", "nergens");
    machine.registry.refuse = true;
    log.Write("fncE", "nergens");
}

} // namespace kavidex::platform
