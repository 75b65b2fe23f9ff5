// CREATE, ALTER and DROP of the Access dialect.
#include <charconv>

#include "data/Error.h"
#include "data/embedded/Translator.h"
#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

class DefinitionParser {
public:
    explicit DefinitionParser(TokenReader& reader) : lclReader(reader) {}

    std::vector<std::string> Create() {
        if (lclReader.TakeWord("table")) return {CreateTable()};
        const bool unique = lclReader.TakeWord("unique");
        if (lclReader.TakeWord("index")) return {CreateIndex(unique)};
        lclReader.Refuse("only tables and indexes can be created");
    }

    std::vector<std::string> Alter() {
        lclReader.NeedWord("table");
        const std::string table = QuotedName(lclReader.NeedTable());
        const bool add = lclReader.TakeWord("add");
        if (!add) lclReader.NeedWord("drop");
        lclReader.NeedWord("column"); // the forms without it belong to other servers
        std::vector<std::string> statements;
        do {
            std::string text = "ALTER TABLE " + table;
            if (add)
                text += " ADD COLUMN " + Column();
            else
                text += " DROP COLUMN " + QuotedName(lclReader.NeedName(true));
            statements.push_back(text);
        } while (lclReader.TakeSymbol(","));
        // A list of new columns may end in a parenthesis that was never opened.
        if (add) lclReader.TakeSymbol(")");
        return statements;
    }

    std::vector<std::string> Drop() {
        if (lclReader.TakeWord("table")) return {"DROP TABLE " + QuotedName(lclReader.NeedTable())};
        lclReader.NeedWord("index");
        const std::string_view index = lclReader.NeedName(false);
        lclReader.NeedWord("on");
        return {"DROP INDEX " + IndexName(lclReader.NeedTable(), index)};
    }

private:
    std::string CreateTable() {
        std::string text = "CREATE TABLE " + QuotedName(lclReader.NeedTable()) + " (";
        lclReader.NeedSymbol("(");
        bool first = true;
        do {
            if (!first) text += ", ";
            first = false;
            const bool constraint = lclReader.PeekWord("constraint") ||
                                    (lclReader.PeekWord("primary") && lclReader.PeekWord("key", 1));
            text += constraint ? TableConstraint() : Column();
        } while (lclReader.TakeSymbol(","));
        lclReader.NeedSymbol(")");
        if (lclCounters > 1) lclReader.Refuse("a table has one counter at most");
        return text + ")";
    }

    std::string Names() {
        lclReader.NeedSymbol("(");
        std::string text = QuotedName(lclReader.NeedName(true));
        while (lclReader.TakeSymbol(",")) text += ", " + QuotedName(lclReader.NeedName(true));
        lclReader.NeedSymbol(")");
        return text;
    }

    std::string TableConstraint() {
        std::string name;
        if (lclReader.TakeWord("constraint"))
            name = "CONSTRAINT " + QuotedName(lclReader.NeedName(false)) + " ";
        if (lclReader.TakeWord("unique")) return name + "UNIQUE (" + Names() + ")";
        lclReader.NeedWord("primary");
        lclReader.NeedWord("key");
        const std::string names = Names();
        // A counter is a key by itself and was declared as one already.
        if (lclCounters == 1 && platform::EqualAsciiNoCase(names, lclCounterName))
            return "CHECK (1)";
        return name + "PRIMARY KEY (" + names + ")";
    }

    // The size behind a text type.
    int Size() {
        if (!lclReader.TakeSymbol("(")) return longestText;
        const Token token = lclReader.Take();
        int size = 0;
        const auto end = token.text.data() + token.text.size();
        if (token.kind != TokenKind::Whole ||
            std::from_chars(token.text.data(), end, size).ec != std::errc() || size < 1 ||
            size > longestText)
            lclReader.Refuse("a text holds 1 to 255 characters");
        lclReader.NeedSymbol(")");
        return size;
    }

    std::string Column() {
        const std::string name = QuotedName(lclReader.NeedName(true));
        const Token word = lclReader.Peek();
        const ColumnType* type = word.kind == TokenKind::Word ? TypeOfWord(word.text) : nullptr;
        if (!type) lclReader.Refuse("no column type of this dialect");
        lclReader.Take();
        const bool counter = type->declared == "INTEGER";
        std::string text = name + " " + std::string(type->declared);
        std::string check;
        if (type->sized) {
            const std::string size = std::to_string(Size());
            text += "(" + size + ")";
            check = " CHECK (length(" + name + ") <= " + size + ")";
        } else if (!counter && IsWholeNumber(type->type)) {
            check = WholeNumberCheck(name, type->type);
        } else if (type->type == AdoType::Double || type->type == AdoType::Single) {
            check = " CHECK (typeof(" + name + ") <> 'text')";
        }
        if (type->type == AdoType::VarWChar || type->type == AdoType::LongVarWChar)
            text += std::string(" COLLATE ") + collation;
        lclDefault.clear();
        const std::string conditions = Conditions(counter);
        check += FormOf(type->type, lclDefault);
        if (counter) {
            ++lclCounters;
            lclCounterName = name;
            if (conditions.find(" PRIMARY KEY") == std::string::npos)
                text += " PRIMARY KEY AUTOINCREMENT";
            text += conditions;
        } else {
            text += conditions;
        }
        return text + check;
    }

    // Texts sort above all numbers, so that the range refuses them as well.
    static std::string WholeNumberCheck(const std::string& name, AdoType type) {
        const char* range = type == AdoType::Integer    ? "-2147483648 AND 2147483647"
                            : type == AdoType::SmallInt ? "-32768 AND 32767"
                                                        : "0 AND 255";
        return " CHECK (" + name + " BETWEEN " + range + ")";
    }

    std::string Conditions(bool counter) {
        std::string text;
        for (;;) {
            std::string name;
            if (lclReader.TakeWord("constraint"))
                name = " CONSTRAINT " + QuotedName(lclReader.NeedName(false));
            if (lclReader.TakeWord("primary")) {
                lclReader.NeedWord("key");
                text += name + " PRIMARY KEY" + (counter ? " AUTOINCREMENT" : " NOT NULL");
            } else if (lclReader.TakeWord("unique")) {
                text += name + " UNIQUE";
            } else if (!name.empty()) {
                lclReader.Refuse();
            } else if (lclReader.TakeWord("not")) {
                lclReader.NeedWord("null");
                if (!counter) text += " NOT NULL";
            } else if (lclReader.TakeWord("default")) {
                lclDefault = Default();
                text += " DEFAULT " + lclDefault;
            } else if (!lclReader.TakeWord("null")) {
                return text;
            }
        }
    }

    std::string Default() {
        const bool negative = lclReader.TakeSymbol("-");
        if (!negative && lclReader.TakeWord("true")) return "-1";
        if (!negative && lclReader.TakeWord("false")) return "0";
        const Token token = lclReader.Take();
        if (!IsLiteral(token.kind)) lclReader.Refuse("a default is a single value");
        return (negative ? "-" : "") + lclReader.LiteralText(token);
    }

    std::string CreateIndex(bool unique) {
        const std::string_view index = lclReader.NeedName(false);
        lclReader.NeedWord("on");
        const std::string_view table = lclReader.NeedTable();
        std::string text = std::string("CREATE ") + (unique ? "UNIQUE " : "") + "INDEX " +
                           IndexName(table, index) + " ON " + QuotedName(table) + " (";
        lclReader.NeedSymbol("(");
        const char* separator = "";
        do {
            text += separator + QuotedName(lclReader.NeedName(true));
            if (lclReader.TakeWord("desc"))
                text += " DESC";
            else
                lclReader.TakeWord("asc");
            separator = ", ";
        } while (lclReader.TakeSymbol(","));
        lclReader.NeedSymbol(")");
        return text + ")";
    }

    TokenReader& lclReader;
    int lclCounters = 0;
    std::string lclDefault; // of the column that is being read
    std::string lclCounterName;
};

} // namespace

std::string FormOf(AdoType type, std::string_view standard) {
    if (type == AdoType::Date) return std::string(" COLLATE ") + dateCollation;
    if (type != AdoType::Boolean) return {};
    const bool yes = platform::Val(standard) != 0;
    return std::string(" NOT NULL ON CONFLICT REPLACE DEFAULT ") + (yes ? "-1" : "0");
}

Translation TranslateDefinition(TokenReader& reader) {
    DefinitionParser parser(reader);
    Translation result;
    result.definition = true;
    if (reader.TakeWord("create"))
        result.statements = parser.Create();
    else if (reader.TakeWord("alter"))
        result.statements = parser.Alter();
    else if (reader.TakeWord("drop"))
        result.statements = parser.Drop();
    reader.NeedEnd();
    return result;
}

} // namespace kavidex::data::embedded
