// The number of a letter, and the file of its values.
#include <set>

#include "tests/unit/controls/PlayedComponents.h"

namespace kavidex::controls {
namespace {

// Of plain letters, in UTF-16 of either order of bytes, without a mark.
std::string Wide(const std::string& text, bool swapped = false) {
    std::string bytes;
    for (const char c : text) {
        if (swapped) bytes += '\0';
        bytes += c;
        if (!swapped) bytes += '\0';
    }
    return bytes;
}

TEST(ValueFile, IsRewrittenInItsOwnEncodingLineEndsAndSeparator) {
    const struct {
        std::string before, after;
    } rows[] = {
        {"", "DocumentId=5\r\n"},
        {"\xEF\xBB\xBFnaam=\xC3\xA9\nDOCUMENTID=1\n", "\xEF\xBB\xBFnaam=\xC3\xA9\nDocumentId=5\n"},
        {"naam;\xE9\r\ndocumentid;4\r\nmy documentid", "naam;\xE9\r\nDocumentId;5\r\n"},
        {"a:1\rb:2", "a:1\rb:2\rDocumentId:5\r"},
        {"\xFF\xFE" + Wide("a=1\r\ndocumentid=2\r\nb=2"),
         "\xFF\xFE" + Wide("a=1\r\nb=2\r\nDocumentId=5\r\n")},
        {"om 12:30\nnaam;A: B\nplaats;C\n", "om 12:30\nnaam;A: B\nplaats;C\nDocumentId;5\n"},
        {Wide("a|1\nDocumentId|2"), Wide("a|1\nDocumentId|5\n")},
        {Wide("a=1\n", true), Wide("a=1\nDocumentId=5\n", true)},
        {"\xFE\xFF" + Wide("a=1\r", true), "\xFE\xFF" + Wide("a=1\rDocumentId=5\r", true)},
    };
    for (const auto& row : rows) EXPECT_EQ(WithDocumentId(row.before, 5), row.after);
}

struct LettersOfABinder : Components {
    int merged = 0;

    void SetUp() override {
        Components::SetUp();
        File("sjablonen\\Letter.dotx");
        Setting("Template", "Path", machine.Path("sjablonen"));
        ASSERT_EQ(Open("key"), 0);
        binder->treCorr().NodeSelected(Root());
        merge = [this](const std::string&, const std::string&) {
            ++merged;
            return LetterGenerator::Merged{};
        };
    }
    void Make(const std::string& valueFile) {
        binder->SetValueFile(valueFile);
        merged = 0;
        machine.messages.shown.clear();
        window.forms.users = {[](tests::FormUser& user) {
            user.Choose("TabStrip1", 2);
            user.Choose("lstFiles", 1);
            user.Enter();
        }};
        binder->ButtonClicked("New");
    }
};

// No letter is made of values that do not hold its number.
TEST_F(LettersOfABinder, StopAtAValueFileThatCannotBeRewrittenAndLeaveItAsItWas) {
    const std::string bytes = "a=1\r\ndocumentid=2\r\n";
    const auto values = File("waarden.txt", bytes);
    const auto refused = [&](const char* what) {
        Make(values);
        EXPECT_EQ(merged, 0) << what;
        ASSERT_EQ(machine.messages.shown.size(), 1U) << what;
        EXPECT_EQ(machine.messages.shown[0].caption, "Error in ButttonClick of ctrlCorrespondence");
        EXPECT_NE(machine.messages.shown[0].text.find("waarden.txt"), std::string::npos) << what;
        EXPECT_FALSE(machine.busy.open) << what;
        EXPECT_EQ(platform::TheWorkstation().files.ReadAll(values), bytes) << what;
    };
    for (const char* operation : {"ReadAll ", "WriteAll "}) { // as when another program holds it
        machine.files.refused = operation + values;
        refused(operation);
    }
    machine.files.refused.clear();
    machine.files.away = values;
    refused("away");
    machine.files.away.clear();
    machine.files.SetAttributes(values, platform::attributes::readOnly);
    refused("read-only");
    machine.files.SetAttributes(values, platform::attributes::normal);
    Make(values);
    EXPECT_EQ(merged, 1);
    EXPECT_EQ(machine.files.ReadAll(values), "a=1\r\nDocumentId=4\r\n");
}

// As a generator does that always writes to one place.
TEST_F(LettersOfABinder, WaitEachByItselfWhereTheStoreIsGone) {
    int letters = 0;
    merge = [&](const std::string&, const std::string&) {
        return LetterGenerator::Merged{1,
                                       File("brief.docx", "letter " + std::to_string(++letters))};
    };
    Setting("Storage", "DocumentPath", machine.Path("weg"));
    for (int letter = 0; letter < 2; ++letter) {
        Make("");
        EXPECT_FALSE(machine.messages.shown.empty());
    }
    Setting("Storage", "DocumentPath", machine.Path("store"));
    ASSERT_EQ(Open("another"), 0);
    ASSERT_EQ(Open("key"), 0);
    model::DocumentFiles documents(machine, connection);
    std::set<std::string> bytes;
    const auto filed = binder->treCorr().Tree()->Item()->ChildCollection();
    ASSERT_TRUE(filed) << "it goes to the top when its dossier is left";
    for (const auto& item : filed->Items()) {
        EXPECT_EQ(item->Description(), "brief");
        bytes.insert(machine.files.ReadAll(documents.Of(*item).path));
    }
    EXPECT_EQ(bytes, (std::set<std::string>{"letter 1", "letter 2"}));
}

TEST_F(LettersOfABinder, TakeALargeValueFile) {
    // KAVIDEX_KILLS asks for one of 50 MB, which the sanitizers take long over.
    const std::size_t size = std::getenv("KAVIDEX_KILLS") ? 50'000'000 : 5'000'000;
    const std::string line = Wide("naam van de klant=" + std::string(180, 'x') + "\r\n");
    std::string lines;
    while (lines.size() < size) lines += line;
    const auto values = File("waarden.txt", lines + Wide("DocumentId=0\r\nlaatste=1"));
    Make(values);
    EXPECT_EQ(merged, 1);
    EXPECT_TRUE(machine.files.ReadAll(values) == lines + Wide("laatste=1\r\nDocumentId=1\r\n"));
}

} // namespace
} // namespace kavidex::controls
