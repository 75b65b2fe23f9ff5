// Saved mails read without a mail program, and the names that mails get as files.
#include <gtest/gtest.h>

#include "mail/CompoundFile.h"
#include "mail/MailNames.h"
#include "mail/SavedMail.h"
#include "platform/Error.h"
#include "tests/fakes/CompoundFile.h"
#include "tests/fakes/FakeWorkstation.h"

namespace {

using namespace kavidex;
using namespace kavidex::mail;
using tests::MailPart;

// 15 November 2026, 14:05:09 UTC.
constexpr std::uint64_t moment = (std::uint64_t{1794751509} + 11644473600) * 10000000;

MailPart Received() {
    MailPart mail(32);
    mail.Wide("0037", "Offerte „Zomer“ 日本")
        .Wide("0C1A", "Piet Jansen")
        .Wide("5D01", "piet@example.org");
    mail.Wide("0040", "An de Vries").Wide("0E04", "An de Vries; Bo").Wide("0E03", "Cor");
    mail.Wide("1000", "Beste An").Raw("10130102", "<p>Beste An, caf\xE9</p>");
    mail.Fixed(0x3FDE0003, 1252).Fixed(0x00390040, moment).Fixed(0x0E060040, moment + 10000000);
    MailPart first(8), second(8), file(8), picture(8);
    first.Wide("3001", "An de Vries").Wide("3003", "/o=x/cn=an").Wide("39FE", "an@example.org");
    second.Wide("3001", "Cor").Fixed(0x0C150003, 2);
    file.Wide("3704", "LONGNA~1.PDF")
        .Wide("3707", "long name.pdf")
        .Raw("37010102", std::string(9000, 'x'));
    picture.Wide("3001", "Plaatje");
    mail.With("__recip_version1.0_#00000000", first).With("__recip_version1.0_#00000001", second);
    mail.With("__attach_version1.0_#00000000", file).With("__attach_version1.0_#00000001", picture);
    return mail;
}

void ExpectReceived(const SavedMail& mail) {
    EXPECT_EQ(mail.subject, "Offerte „Zomer“ 日本");
    EXPECT_EQ(mail.senderName, "Piet Jansen");
    EXPECT_EQ(mail.senderAddress, "piet@example.org");
    EXPECT_EQ(mail.receivedByName, "An de Vries");
    EXPECT_EQ(mail.to, "An de Vries; Bo");
    EXPECT_EQ(mail.copy, "Cor");
    EXPECT_EQ(mail.text, "Beste An");
    EXPECT_EQ(mail.html, "<p>Beste An, café</p>");
    ASSERT_EQ(mail.recipients.size(), 2u);
    EXPECT_EQ(mail.recipients[0].address, "an@example.org");
    EXPECT_EQ(mail.recipients[1].kind, MailAddress::Kind::Copy);
    EXPECT_EQ(mail.attachmentCount, 2u);
    EXPECT_EQ(mail.attachments, (std::vector<std::string>{"long name.pdf", "Plaatje"}));
    ASSERT_TRUE(mail.sentOn && mail.receivedOn);
    EXPECT_EQ(mail.sentOn->year * 100 + mail.sentOn->month, 202611);
    EXPECT_EQ(mail.sentOn->second, 9);
    EXPECT_EQ(mail.receivedOn->second, 10);
}

TEST(SavedMail, GivesHeaderBodiesAndAttachments) {
    const std::string bytes = tests::CompoundFileWriter::Write(Received().Whole());
    ExpectReceived(ReadSavedMail(*ReadCompoundFile(bytes)));
    // By the system's storage functions where it has them, under a name beyond ASCII.
    tests::FakeWorkstation workstation;
    const std::string path = workstation.Path("één 日.msg");
    workstation.files.WriteAll(path, bytes);
    ExpectReceived(ReadSavedMail(path));
}

TEST(SavedMail, ReadsTextsInTheirCodePage) {
    MailPart mail(32);
    mail.Raw("0037001E", "\xCF\xF0\xE8\xE2\xE5\xF2")
        .Raw("0C1A001E", "\xC0\xED\xED\xE0")
        .Fixed(0x3FFD0003, 1251);
    mail.Raw("1000001E", "tekst")
        .Raw("1009"
             "0102",
             "compressed");
    const SavedMail read =
        ReadSavedMail(*ReadCompoundFile(tests::CompoundFileWriter::Write(mail.Whole())));
    EXPECT_EQ(read.subject, "Привет");
    EXPECT_EQ(read.senderName, "Анна");
    EXPECT_EQ(read.text, "tekst");
    EXPECT_EQ(read.html, "");
    EXPECT_EQ(read.receivedByName, "");
    EXPECT_FALSE(read.sentOn);
    EXPECT_EQ(read.attachmentCount, 0u);
}

TEST(SavedMail, RefusesWhatIsNoMail) {
    EXPECT_THROW(ReadCompoundFile(""), platform::Error);
    EXPECT_THROW(ReadCompoundFile(std::string(5000, 'x')), platform::Error);
    tests::Folder other;
    other.streams["WordDocument"] = "text";
    const auto file = ReadCompoundFile(tests::CompoundFileWriter::Write(other));
    EXPECT_THROW(ReadSavedMail(*file), platform::Error);
    EXPECT_THROW(ReadSavedMail("C:\\nowhere\\mail.msg"), platform::Error);
}

// Cut anywhere, and with any one number of the header or the directory turned into another, a mail
// is refused or read in part; nothing else happens.
TEST(SavedMail, EndsOnEveryDamage) {
    const std::string whole = tests::CompoundFileWriter::Write(Received().Whole());
    int refused = 0, read = 0;
    const auto attempt = [&](std::string bytes) {
        try {
            ReadSavedMail(*ReadCompoundFile(std::move(bytes)));
            ++read;
        } catch (const platform::Error&) {
            ++refused;
        }
    };
    for (std::size_t size = 0; size < whole.size(); size += 509) attempt(whole.substr(0, size));
    for (std::size_t at = 0; at + 4 <= whole.size(); at += at < 512 ? 4 : 52) {
        for (const std::uint32_t number : {0u, 1u, 0x7FFFFFFFu, 0xFFFFFFFEu}) {
            std::string bytes = whole;
            platform::WriteLittle(bytes, at, number);
            attempt(std::move(bytes));
        }
    }
    EXPECT_GT(refused, 20);
    EXPECT_GT(read, 20);
}

TEST(MailNames, CleanSubjectsAsEachKindOfMailIsKept) {
    EXPECT_EQ(DroppedMailName("Re: a/b?", 1), "Re  a b ");
    EXPECT_EQ(DroppedMailName("", 3), "Leeg onderwerp 3");
    EXPECT_EQ(SentMailName("a/b:c?"), "a b c?");
    EXPECT_EQ(SentMailName(""), "Email");
    EXPECT_EQ(DisplayName("brief 12-05: x-y"), "brief 12 05  x y");
}

TEST(MailNames, MakeAnyNameOneThatTheFileSystemTakes) {
    EXPECT_EQ(SafeName("a b c?"), "a b c");
    EXPECT_EQ(SafeName("\"<*>|\t\""), "Email");
    EXPECT_EQ(SafeName("con.txt"), "_con.txt");
    EXPECT_EQ(SafeName("gewoon"), "gewoon");
    std::string longName;
    for (int i = 0; i < 1000; ++i) longName += "日本é ";
    const std::string safe = SafeName(longName);
    EXPECT_TRUE(platform::IsFileName(safe));
    EXPECT_LE(safe.size(), 120u);
    EXPECT_TRUE(longName.starts_with(safe));
}

TEST(MailNames, WriteMomentsWithBareMinutesAndSeconds) {
    EXPECT_EQ(MomentNumber({2026, 11, 15, 14, 5, 9, 0}), "202611151459");
    EXPECT_EQ(MomentNumber({2026, 1, 2, 3, 40, 50, 0}), "20260102034050");
}

} // namespace
