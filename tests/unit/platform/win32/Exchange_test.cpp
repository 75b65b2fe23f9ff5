// What goes to other programs and comes from them: data objects and the clipboard.
#include <gtest/gtest.h>

#include <thread>

#include <windows.h>

#include <ole2.h>
#include <shlobj.h>

#include "platform/Error.h"
#include "platform/win32/DataObject.h"
#include "platform/win32/ExchangeFormats.h"
#include "platform/win32/WindowsClipboard.h"

namespace kavidex::platform::win32 {

namespace {

struct Exchange : testing::Test {
    void SetUp() override { OleInitialize(nullptr); }
    void TearDown() override { OleUninitialize(); }

    static void Store(IDataObject& object, CLIPFORMAT format, LONG index, STGMEDIUM medium) {
        FORMATETC what = Wanted(format, index, medium.tymed);
        ASSERT_EQ(object.SetData(&what, &medium, TRUE), S_OK);
    }
};

} // namespace

TEST_F(Exchange, CarriesTextFilesMailsAndItsOwn) {
    ExchangeData data{true, true, "één 文\r\nregel", {R"(C:\a b.tif)", R"(\\server\文.pdf)"}};
    data.own = std::string("a\0b", 3);
    data.virtualFiles.push_back({"mail.msg", [] { return std::string("x\0y", 3); }});
    data.virtualFiles.push_back(
        {"gone.msg", []() -> std::string { throw Error(errors::notFound, "gone"); }});
    const auto object = MakeDataObject(data);
    const auto read = ReadExchange(*object);
    EXPECT_EQ(read.text, data.text);
    EXPECT_EQ(read.files, data.files);
    EXPECT_EQ(read.own.substr(0, 3), data.own);
    ASSERT_EQ(read.virtualFiles.size(), 2U);
    EXPECT_EQ(read.virtualFiles[0].name, "mail.msg");
    EXPECT_EQ(read.virtualFiles[0].read().substr(0, 3), std::string("x\0y", 3));
    EXPECT_THROW(read.virtualFiles[1].read(), Error) << "a source that fails is told";
    ComPtr<IEnumFORMATETC> formats;
    ASSERT_EQ(object->EnumFormatEtc(DATADIR_GET, formats.Put()), S_OK);
    FORMATETC first{};
    EXPECT_EQ(formats->Next(1, &first, nullptr), S_OK);
    EXPECT_EQ(first.cfFormat, CF_HDROP) << "files before text: a desktop takes the first it knows";
}

TEST_F(Exchange, ReadsTheMailsOfProgramsThatHandOutStoragesAndStreams) {
    const auto object = MakeDataObject({});
    FILEGROUPDESCRIPTORA two{};
    std::string block(sizeof two + sizeof two.fgd[0], '\0');
    auto& group = *reinterpret_cast<FILEGROUPDESCRIPTORA*>(block.data());
    group.cItems = 2;
    lstrcpyA(group.fgd[0].cFileName, "folder\\..\\letter.msg");
    group.fgd[1].dwFlags = FD_FILESIZE;
    group.fgd[1].nFileSizeLow = 5;
    lstrcpyA(group.fgd[1].cFileName, "note.txt");
    STGMEDIUM medium{};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = NewBlock(block.data(), block.size());
    Store(*object, Formats().descriptorsNarrow, -1, medium);

    ComPtr<IStorage> storage;
    ASSERT_EQ(
        StgCreateDocfile(nullptr,
                         STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE,
                         0, storage.Put()),
        S_OK);
    ComPtr<IStream> stream;
    ASSERT_EQ(
        storage->CreateStream(L"body", STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.Put()),
        S_OK);
    ASSERT_EQ(stream->Write("hello", 5, nullptr), S_OK);
    stream.Reset();
    medium = {};
    medium.tymed = TYMED_ISTORAGE;
    medium.pstg = storage.Detach();
    Store(*object, Formats().contents, 0, medium);
    medium = {};
    medium.tymed = TYMED_ISTREAM;
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, &medium.pstm), S_OK);
    ASSERT_EQ(medium.pstm->Write("plain", 5, nullptr), S_OK);
    Store(*object, Formats().contents, 1, medium);

    const auto read = ReadExchange(*object);
    ASSERT_EQ(read.virtualFiles.size(), 2U);
    EXPECT_EQ(read.virtualFiles[0].name, "letter.msg") << "no way out of the folder it is saved to";
    const auto mail = read.virtualFiles[0].read();
    EXPECT_EQ(mail.substr(0, 4), "\xD0\xCF\x11\xE0") << "a compound file";
    EXPECT_NE(mail.find("hello"), std::string::npos);
    EXPECT_EQ(read.virtualFiles[1].read(), "plain");

    group.cItems = 100000; // more than there is room for
    medium = {};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = NewBlock(block.data(), block.size());
    Store(*object, Formats().descriptorsNarrow, -1, medium);
    EXPECT_EQ(ReadExchange(*object).virtualFiles.size(), 2U);
}

TEST_F(Exchange, TheClipboardKeepsWhatIsOnItWhenAnotherProgramHoldsIt) {
    WindowsClipboard clipboard;
    clipboard.Write({true, true, "tekst", {R"(C:\a.tif)"}});
    EXPECT_TRUE(clipboard.HasFiles());
    EXPECT_TRUE(clipboard.HasText());
    EXPECT_FALSE(clipboard.HasOwn());

    HANDLE opened = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE finished = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread other([&] {
        const HWND owner =
            CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        EXPECT_TRUE(OpenClipboard(owner));
        SetEvent(opened);
        WaitForSingleObject(finished, 10000);
        CloseClipboard();
        DestroyWindow(owner);
    });
    WaitForSingleObject(opened, 10000);
    EXPECT_THROW(clipboard.Write({true, false, "anders", {}}), Error);
    EXPECT_THROW(clipboard.Read(), Error);
    EXPECT_TRUE(clipboard.HasFiles()) << "asked without opening it";
    SetEvent(finished);
    other.join();
    CloseHandle(opened);
    CloseHandle(finished);
    const auto read = clipboard.Read();
    EXPECT_EQ(read.text, "tekst");
    EXPECT_EQ(read.files, std::vector<std::string>{R"(C:\a.tif)"});
}

} // namespace kavidex::platform::win32
