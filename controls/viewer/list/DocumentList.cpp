#include "controls/viewer/list/DocumentList.h"

#include "controls/lists/DocumentRows.h"
#include "data/modData.h"
#include "model/Store.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr ListColumn columns[] = {
    {.caption = {}, .field = "Id", .hidden = true},
    {.caption = "Omschrijving", .field = "Omschrijving", .least = 180},
    {.caption = "Type", .field = "Type"},
    {.caption = "Toegevoegd door", .field = "Toegevoegd door"},
    {.caption = {}, .field = "InsertSort", .hidden = true},
    {.caption = "Toegevoegd op", .field = "Toegevoegd op", .sortField = "InsertSort", .least = 105},
    {.caption = "Verzonden aan", .field = "Verzonden aan"},
    {.caption = "Ontvangen van", .field = "Ontvangen van"},
    {.caption = {}, .field = "Sort Verzonden op", .hidden = true},
    {.caption = "Verzonden op",
     .field = "Verzonden op",
     .sortField = "Sort Verzonden op",
     .least = 120},
    {.caption = {}, .field = "Sort Ontvangen op", .hidden = true},
    {.caption = "Ontvangen op",
     .field = "Ontvangen op",
     .sortField = "Sort Ontvangen op",
     .least = 120},
    {.caption = "Aantal bijlagen", .field = "Aantal bijlagen"},
};

constexpr std::string_view head =
    "SELECT tblTreeItem.Id, tblTreeItem.Description as Omschrijving, tblTreeItem.Type, ";

// With the blanks that other programs know the statement by.
constexpr std::string_view access =
    "tblDocument.InsertedBy as [Toegevoegd door], tblDocument.InsertDate & tblDocument.InsertTime "
    "as InsertSort, right(tblDocument.InsertDate,2) & '-' & mid(tblDocument.InsertDate,5,2) & '-' "
    "& left(tblDocument.InsertDate,4)   & ' ' & left(tblDocument.InsertTime,2) & ':' & "
    "right(tblDocument.InsertTime,2) as [Toegevoegd op], tblDocExtraInfo.SendTo as [Verzonden "
    "aan], tblDocExtraInfo.SendFrom as [Ontvangen van],  tblDocExtraInfo.SendOn as [Sort Verzonden "
    "op], iif(tblDocExtraInfo.SendOn is null,'',mid(tblDocExtraInfo.SendOn,7,2) & '-' & "
    "mid(tblDocExtraInfo.SendOn,5,2) & '-' & left(tblDocExtraInfo.SendOn,4)   & ' ' & "
    "mid(tblDocExtraInfo.SendOn,9,2) & ':' & mid(tblDocExtraInfo.SendOn,11,2) & ':' & "
    "mid(tblDocExtraInfo.SendOn,13,2)) as [Verzonden op],  tblDocExtraInfo.RecievedOn as [Sort "
    "Ontvangen op], iif(tblDocExtraInfo.RecievedOn is null,'',mid(tblDocExtraInfo.RecievedOn,7,2) "
    "& '-' & mid(tblDocExtraInfo.RecievedOn,5,2) & '-' & left(tblDocExtraInfo.RecievedOn,4)   & ' "
    "' & mid(tblDocExtraInfo.RecievedOn,9,2) & ':' & mid(tblDocExtraInfo.RecievedOn,11,2) & ':' & "
    "mid(tblDocExtraInfo.RecievedOn,13,2)) as [Ontvangen op],  tblDocExtraInfo.NrOfAttatchements "
    "as [Aantal bijlagen]";

constexpr std::string_view tail =
    " FROM (tblTreeItem LEFT JOIN tblDocument ON tblTreeItem.ItemId = tblDocument.DocId) LEFT JOIN "
    "tblDocExtraInfo ON tblDocument.Id = tblDocExtraInfo.DocId Where Not ((ItemId Is Null) Or "
    "ItemId = 0) And ParentId = ";

// What the servers call the same: how they quote a name, join texts and take one apart.
struct Server {
    char open, close;
    std::string_view join, between, joined; // "concat(" a ", " b ")", or a " + " b
    std::string_view date, time;            // the row's numbers as texts of eight and four digits
};

constexpr Server mySql = {'`',
                          '`',
                          "concat(",
                          ", ",
                          ")",
                          "cast(tblDocument.InsertDate as char)",
                          "lpad(tblDocument.InsertTime,4,'0')"};
constexpr Server sqlServer = {'[',
                              ']',
                              "",
                              " + ",
                              "",
                              "convert(varchar(8),tblDocument.InsertDate)",
                              "right('000' + convert(varchar(4),tblDocument.InsertTime),4)"};

std::string Named(const Server& server, std::string_view name) {
    return std::string(" as ") + server.open + std::string(name) + server.close;
}

// `text` cut into pieces: each a place and a length in it, or a text that stands between two.
struct Piece {
    int from, length;
    std::string_view between = {};
};

std::string Joined(const Server& server, const std::string& text, std::span<const Piece> pieces) {
    std::string joined(server.join);
    for (const auto& piece : pieces) {
        if (&piece != pieces.data()) joined += server.between;
        joined += piece.length == 0 ? "'" + std::string(piece.between) + "'"
                                    : "substring(" + text + "," + std::to_string(piece.from) + "," +
                                          std::to_string(piece.length) + ")";
    }
    return joined + std::string(server.joined);
}

constexpr Piece day[] = {{7, 2}, {0, 0, "-"}, {5, 2}, {0, 0, "-"}, {1, 4}};
constexpr Piece minute[] = {{1, 2}, {0, 0, ":"}, {3, 2}};
constexpr Piece moment[] = {{7, 2}, {0, 0, "-"}, {5, 2},  {0, 0, "-"}, {1, 4}, {0, 0, " "},
                            {9, 2}, {0, 0, ":"}, {11, 2}, {0, 0, ":"}, {13, 2}};

std::string SentOrReceived(const Server& server, const std::string& column,
                           std::string_view shown) {
    return ", " + column + Named(server, "Sort " + std::string(shown)) + ", case when " + column +
           " is null then '' else " + Joined(server, column, moment) + " end" +
           Named(server, shown);
}

std::string ServerColumns(const Server& server) {
    const std::string date(server.date), time(server.time), join(server.join),
        joined(server.joined), between(server.between);
    return "tblDocument.InsertedBy" + Named(server, "Toegevoegd door") + ", " + join + date +
           between + time + joined + " as InsertSort, " + join + Joined(server, date, day) +
           between + "' '" + between + Joined(server, time, minute) + joined +
           Named(server, "Toegevoegd op") + ", tblDocExtraInfo.SendTo" +
           Named(server, "Verzonden aan") + ", tblDocExtraInfo.SendFrom" +
           Named(server, "Ontvangen van") +
           SentOrReceived(server, "tblDocExtraInfo.SendOn", "Verzonden op") +
           SentOrReceived(server, "tblDocExtraInfo.RecievedOn", "Ontvangen op") +
           ", tblDocExtraInfo.NrOfAttatchements" + Named(server, "Aantal bijlagen");
}

// A time is kept as a number: five past nine is 905, which the statement's own cutting does not
// know.
class FolderRows final : public RecordsetRows {
public:
    explicit FolderRows(data::RecordsetPtr rows) : RecordsetRows(std::move(rows), "Id", "Type") {}

    std::string Text(std::size_t row, std::string_view field) const override {
        const bool shown = field == "Toegevoegd op", sort = field == "InsertSort";
        if (!shown && !sort) return RecordsetRows::Text(row, field);
        const auto stored = RecordsetRows::Text(row, "InsertSort");
        const auto date = stored.substr(0, 8), time = stored.size() > 8 ? stored.substr(8) : "";
        if (shown) return InsertMoment(date, time);
        return time.empty() || time.size() > 4 ? stored
                                               : date + std::string(4 - time.size(), '0') + time;
    }

    void SortKey(std::size_t row, std::string_view field, std::string& to) const override {
        if (field == "InsertSort")
            to += Text(row, field);
        else
            RecordsetRows::SortKey(row, field, to);
    }
};

} // namespace

std::span<const ListColumn> DocumentListColumns() { return columns; }

std::string DocumentListStatement(const data::ConnectionPtr& connection, std::int32_t folder) {
    std::string middle(access);
    if (data::IsMySqlConnection(connection))
        middle = ServerColumns(mySql);
    else if (!data::IsAccessConnection(connection))
        middle = ServerColumns(sqlServer);
    return std::string(head) + middle + std::string(tail) + std::to_string(folder);
}

std::unique_ptr<ListRows> OpenDocumentList(const data::ConnectionPtr& connection,
                                           std::int32_t folder) {
    return std::make_unique<FolderRows>(
        model::Store(connection).Read(DocumentListStatement(connection, folder)));
}

} // namespace kavidex::controls
