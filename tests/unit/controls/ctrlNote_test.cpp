// Notes: the form of their files, and the rules of creating, loading and saving.
#include <gtest/gtest.h>

#include "controls/viewer/NoteFile.h"
#include "controls/viewer/ctrlNote.h"
#include "tests/fakes/FakeForms.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls {

namespace {

struct Note : testing::Test {
    tests::FakeWorkstation machine;
    ctrlNote note{machine};
    tests::FormUser user{note.Form()};
    std::string path = machine.Path("12.nnt");

    void File(std::string_view bytes) { machine.files.WriteAll(path, bytes); }
    std::string File() { return machine.files.ReadAll(path); }
};

constexpr char heading[] = "Gemaakt door: 'jansen' Op: '15-11-2026' om '14:05:09'";

} // namespace

TEST_F(Note, IsTwoQuotedRecordsAndComesBackUnchanged) {
    EXPECT_EQ(note.fncCreateNew(path), 1);
    EXPECT_EQ(note.Heading(), heading);
    EXPECT_EQ(note.fncSaveMemo(true), 0) << "nothing was written in it";
    EXPECT_FALSE(machine.files.FileExists(path));
    user.Type("txtMemo", "Belde \"O'Brien\" over\npolis 100%, \xE2\x82\xAC 12");
    EXPECT_EQ(note.fncSaveMemo(false), 1);
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_EQ(File(), "\"" + std::string(heading) +
                          "\"\r\n\"Belde \"O'Brien\" over\r\npolis 100%, \x80 12\"\r\n");
    EXPECT_EQ(note.fncSaveMemo(true), 0);

    ctrlNote other(machine);
    EXPECT_EQ(other.fncLoadMemo(path), 1);
    EXPECT_EQ(other.Heading(), heading);
    EXPECT_EQ(other.Memo(), note.Text());
    EXPECT_FALSE(other.IsChanged());
    EXPECT_EQ(other.fncLoadMemo(machine.Path("13.nnt")), 0);
    EXPECT_EQ(other.Key(), machine.Path("13.nnt"));
    EXPECT_EQ(other.Memo(), note.Text());
}

TEST_F(Note, EveryTextComesBackWhole) {
    for (const std::string text : {"", "\"", "\"\r\n", "\r\n", "a\"\r\n\"b", "\"a\"\r\n\"b\"\r\n",
                                   "x\"\r\n\r\n", "\xCE\xBB\"\r\n\"", "\xEF\xBB\xBF", "\xC2\x81"}) {
        const auto bytes = WriteNote("kop", text);
        const auto read = ReadNote(bytes);
        EXPECT_EQ(read.heading, "kop");
        EXPECT_EQ(read.memo, text);
        EXPECT_TRUE(read.whole);
    }
    EXPECT_EQ(WriteNote("k", "\xC3\xA9"), "\"k\"\r\n\"\xE9\"\r\n");
    EXPECT_EQ(WriteNote("k", "\xCE\xBB"), "\xEF\xBB\xBF\"k\"\r\n\"\xCE\xBB\"\r\n");
    EXPECT_EQ(ReadNote("los").memo, "los");
    EXPECT_EQ(ReadNote("\"kop\"\n\"open").memo, "open");
    EXPECT_FALSE(ReadNote(std::string("\"a\"\r\n\"b\0c\"", 10)).whole);
}

TEST_F(Note, OfThreeRecordsTheLastIsTheTextAndTheFileIsKeptBesideTheNewOne) {
    const std::string three = "\"kop\"\r\n\"een\"\r\n\"twee\"\r\n";
    File(three);
    EXPECT_EQ(note.fncLoadMemo(path), 1);
    EXPECT_EQ(note.Heading(), "kop");
    EXPECT_EQ(note.Memo(), "twee");
    user.Type("txtMemo", "drie");
    EXPECT_EQ(note.fncSaveMemo(false), 1);
    EXPECT_EQ(File(), "\"kop\"\r\n\"drie\"\r\n");
    EXPECT_EQ(machine.files.ReadAll(path + ".old"), three);
    File("\"kop\"\r\n\"van een ander\"\r\n");
    user.Type("txtMemo", "vier");
    EXPECT_EQ(note.fncSaveMemo(false), 1);
    EXPECT_EQ(ReadNote(machine.files.ReadAll(path + " (1).old")).memo, "van een ander");
}

TEST_F(Note, WhatAFileDoesNotHoldStaysAsItWas) {
    std::string headings;
    for (const char* bytes : {"\"een\"\r\n\"tekst\"\r\n", "", "\"twee\"\r\n"}) {
        File(bytes);
        EXPECT_EQ(note.fncLoadMemo(path), 1);
        EXPECT_EQ(note.Text(), "tekst");
        headings += note.Heading() + " ";
    }
    EXPECT_EQ(headings, "een een twee ");
}

TEST_F(Note, AsksAndKeepsWhatItCannotReadOrWrite) {
    File("\"kop\"\r\n\"oud\"\r\n");
    note.fncLoadMemo(path);
    user.Type("txtMemo", "nieuw");
    machine.messages.answers = {platform::Answer::No};
    EXPECT_EQ(note.fncSaveMemo(true), 1);
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text, "Wilt u de wijzigingen opslaan?");
    EXPECT_EQ(machine.messages.shown[0].caption, "Bevestigen opslaan wijzigingen");
    EXPECT_EQ(ReadNote(File()).memo, "oud");
    machine.files.FailAt(1, platform::errors::diskFull, true);
    EXPECT_EQ(note.fncSaveMemo(false), -1);
    EXPECT_NE(note.LastError(), "");
    EXPECT_TRUE(note.IsChanged()) << "it can be saved yet";
    EXPECT_EQ(note.fncLoadMemo(path), 0);
    machine.files.FailAt(0);
    EXPECT_EQ(note.fncSaveMemo(false), -1);
    EXPECT_EQ(note.LastError(), "12.nnt: niet gelezen en daarom niet overschreven");
    EXPECT_EQ(ReadNote(File()).memo, "oud");
    note.SetReadOnly(true);
    EXPECT_THROW(user.Type("txtMemo", "x"), std::logic_error);
}

} // namespace kavidex::controls
