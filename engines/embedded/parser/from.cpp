// FROM: tables, derived tables, functions, joins.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/parser/query.h"

namespace basalt::embedded {

using namespace ast;

namespace {

TableSourcePtr parseJoined(TokenCursor& cursor);
TableSourcePtr parseJoinsAfter(TokenCursor& cursor, TableSourcePtr left);

void parseAliases(TokenCursor& cursor, TableSource& source) {
    source.alias = parseTableAlias(cursor);
    if (!source.alias.empty() && cursor.at(TokenKind::LeftParenthesis) && cursor.atName(1)) {
        source.columnAliases = parseNameList(cursor);
    }
}

// Whether (word...) behind a table's name is the old way to give locking hints.
bool atOldHints(const TokenCursor& cursor) {
    if (!cursor.at(TokenKind::LeftParenthesis)) return false;
    for (const std::string_view hint : {"NOLOCK", "HOLDLOCK", "ROWLOCK", "PAGLOCK", "TABLOCK", "TABLOCKX", "UPDLOCK",
                                        "XLOCK", "READPAST", "READUNCOMMITTED", "READCOMMITTED", "READCOMMITTEDLOCK",
                                        "REPEATABLEREAD", "SERIALIZABLE", "NOWAIT", "INDEX", "FASTFIRSTROW"}) {
        if (cursor.atWord(hint, 1)) return true;
    }
    return false;
}

std::vector<std::string> parseHintList(TokenCursor& cursor) {
    std::vector<std::string> hints;
    cursor.expect(TokenKind::LeftParenthesis);
    while (!cursor.accept(TokenKind::RightParenthesis)) {
        hints.push_back(cursor.capitalWord());
        if (cursor.at(TokenKind::LeftParenthesis) || cursor.at(TokenKind::Equal)) {
            // INDEX(name, 1), INDEX = name, FORCESEEK(...): which index is for the planner to say.
            cursor.accept(TokenKind::Equal);
            if (cursor.at(TokenKind::LeftParenthesis)) {
                cursor.skipParentheses();
            } else if (cursor.at(TokenKind::Literal)) {
                cursor.fixedInteger();
            } else {
                cursor.name();
            }
        }
        if (!cursor.accept(TokenKind::Comma) && !cursor.at(TokenKind::Word)) {
            cursor.expect(TokenKind::RightParenthesis);
            break;
        }
    }
    return hints;
}

void refuseAfterSource(const TokenCursor& cursor) {
    if (cursor.at(Keyword::Pivot)) cursor.unsupportedHere("PIVOT");
    if (cursor.at(Keyword::Unpivot)) cursor.unsupportedHere("UNPIVOT");
    if (cursor.at(Keyword::Tablesample)) cursor.unsupportedHere("TABLESAMPLE");
}

TableSourcePtr parseNamedSource(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ObjectName name = cursor.objectName();
    if (cursor.at(TokenKind::LeftParenthesis) && !atOldHints(cursor)) {
        auto source = std::make_unique<FunctionTable>();
        source->name = std::move(name);
        cursor.next();
        if (!cursor.at(TokenKind::RightParenthesis)) {
            do {
                source->arguments.push_back(parseExpressionOrDefault(cursor));
            } while (cursor.accept(TokenKind::Comma));
        }
        cursor.expect(TokenKind::RightParenthesis);
        parseAliases(cursor, *source);
        source->range = cursor.from(start);
        return source;
    }
    auto source = std::make_unique<NamedTable>();
    source->name = std::move(name);
    if (atOldHints(cursor)) source->hints = parseHintList(cursor);
    refuseAfterSource(cursor);
    source->alias = parseTableAlias(cursor);
    for (std::string& hint : atOldHints(cursor) ? parseHintList(cursor) : parseTableHints(cursor)) {
        source->hints.push_back(std::move(hint));
    }
    source->range = cursor.from(start);
    return source;
}

TableSourcePtr parseValuesSource(TokenCursor& cursor) {
    auto source = std::make_unique<ValuesTable>();
    cursor.expect(Keyword::Values);
    do {
        if (source->rows.size() == static_cast<std::size_t>(kMostValuesRows)) {
            cursor.failLimit(
                10738,
                "The number of row value expressions in the VALUES clause exceeds the maximum allowed number "
                "of 1000 row values.",
                cursor.peek().range);
        }
        source->rows.push_back(parseRow(cursor));
    } while (cursor.accept(TokenKind::Comma));
    return source;
}

TableSourcePtr finishDerived(TokenCursor& cursor, QueryPtr query, std::uint32_t start) {
    auto source = std::make_unique<DerivedTable>();
    source->query = std::move(query);
    parseAliases(cursor, *source);
    // A derived table must have a name.
    if (source->alias.empty()) cursor.failHere();
    source->range = cursor.from(start);
    return source;
}

// What stands in parentheses: a query that still wants its name, or a finished source.
struct Parenthesized {
    QueryPtr query;
    TableSourcePtr source;
};

// The cursor stands on the parenthesis.
Parenthesized parseParenthesized(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    Parenthesized result;
    cursor.expect(TokenKind::LeftParenthesis);
    if (cursor.at(Keyword::Select)) {
        result.query = parseQuery(cursor);
    } else if (cursor.at(Keyword::Values)) {
        result.source = parseValuesSource(cursor);
        cursor.expect(TokenKind::RightParenthesis);
        parseAliases(cursor, *result.source);
        if (result.source->alias.empty()) cursor.failHere();
        result.source->range = cursor.from(start);
        return result;
    } else if (cursor.at(TokenKind::LeftParenthesis)) {
        const std::uint32_t innerStart = cursor.begin();
        Parenthesized inner = parseParenthesized(cursor);
        if (inner.query && atSetOperator(cursor)) {
            result.query = continueQuery(cursor, std::move(inner.query));
        } else if (inner.query && cursor.at(TokenKind::RightParenthesis)) {
            result.query = std::move(inner.query);
        } else {
            if (inner.query) inner.source = finishDerived(cursor, std::move(inner.query), innerStart);
            result.source = parseJoinsAfter(cursor, std::move(inner.source));
        }
    } else {
        result.source = parseJoined(cursor);
    }
    cursor.expect(TokenKind::RightParenthesis);
    return result;
}

TableSourcePtr parsePrimarySource(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    TableSourcePtr result;
    if (cursor.at(TokenKind::LeftParenthesis)) {
        Parenthesized inner = parseParenthesized(cursor);
        result = inner.query ? finishDerived(cursor, std::move(inner.query), start) : std::move(inner.source);
    } else if (cursor.at(TokenKind::Variable)) {
        auto source = std::make_unique<VariableTable>();
        source->name = cursor.variable();
        source->alias = parseTableAlias(cursor);
        source->range = cursor.from(start);
        result = std::move(source);
    } else {
        for (const Keyword word : {Keyword::Openquery, Keyword::Openrowset, Keyword::Opendatasource, Keyword::Openxml,
                                   Keyword::Containstable, Keyword::Freetexttable}) {
            if (cursor.at(word)) cursor.unsupportedHere(spelling(word));
        }
        result = parseNamedSource(cursor);
    }
    refuseAfterSource(cursor);
    return result;
}

// The words of a join, up to and including JOIN or APPLY; nothing is read when there is no join here.
bool acceptJoin(TokenCursor& cursor, JoinKind& kind) {
    const auto hint = [&] {
        if (cursor.atAnyOf({Keyword::Loop, Keyword::Hash, Keyword::Merge, Keyword::Remote}) &&
            cursor.keyword(1) == Keyword::Join) {
            cursor.next();
        }
    };
    switch (cursor.keyword()) {
        case Keyword::Join:
            kind = JoinKind::Inner;
            cursor.next();
            return true;
        case Keyword::Inner:
            kind = JoinKind::Inner;
            cursor.next();
            hint();
            cursor.expect(Keyword::Join);
            return true;
        case Keyword::Left:
        case Keyword::Right:
        case Keyword::Full:
            kind = cursor.at(Keyword::Left)    ? JoinKind::Left
                   : cursor.at(Keyword::Right) ? JoinKind::Right
                                               : JoinKind::Full;
            cursor.next();
            cursor.accept(Keyword::Outer);
            hint();
            cursor.expect(Keyword::Join);
            return true;
        case Keyword::Cross:
            cursor.next();
            if (cursor.accept(Keyword::Apply)) {
                kind = JoinKind::CrossApply;
            } else {
                cursor.expect(Keyword::Join);
                kind = JoinKind::Cross;
            }
            return true;
        case Keyword::Outer:
            cursor.next();
            cursor.expect(Keyword::Apply);
            kind = JoinKind::OuterApply;
            return true;
        default:
            return false;
    }
}

bool takesCondition(JoinKind kind) {
    return kind <= JoinKind::Full;
}

bool atJoin(const TokenCursor& cursor) {
    return cursor.atAnyOf(
        {Keyword::Join, Keyword::Inner, Keyword::Left, Keyword::Right, Keyword::Full, Keyword::Cross, Keyword::Outer});
}

// One join and its right side, which goes on as long as its condition has not come: a join b join c on ... on ...
bool parseOneJoin(TokenCursor& cursor, TableSourcePtr& left) {
    const std::uint32_t start = left->range.begin;
    JoinKind kind = JoinKind::Inner;
    if (!acceptJoin(cursor, kind)) return false;
    const Nesting nesting(cursor);
    cursor.countTableOperator();
    auto join = std::make_unique<Join>();
    join->joinKind = kind;
    join->left = std::move(left);
    join->right = parsePrimarySource(cursor);
    if (takesCondition(kind)) {
        while (!cursor.at(Keyword::On) && atJoin(cursor))
            parseOneJoin(cursor, join->right);
        cursor.expect(Keyword::On);
        join->condition = parseCondition(cursor);
    }
    join->range = cursor.from(start);
    left = std::move(join);
    return true;
}

TableSourcePtr parseJoinsAfter(TokenCursor& cursor, TableSourcePtr left) {
    while (parseOneJoin(cursor, left)) {
    }
    return left;
}

TableSourcePtr parseJoined(TokenCursor& cursor) {
    return parseJoinsAfter(cursor, parsePrimarySource(cursor));
}

}  // namespace

std::vector<std::string> parseTableHints(TokenCursor& cursor) {
    if (!cursor.at(Keyword::With) || cursor.peek(1).kind != TokenKind::LeftParenthesis) return {};
    cursor.next();
    return parseHintList(cursor);
}

Identifier parseTableAlias(TokenCursor& cursor) {
    if (cursor.accept(Keyword::As)) return cursor.name();
    if (cursor.atName() && cursor.peek(1).kind != TokenKind::Colon) return cursor.name();
    return {};
}

std::vector<TableSourcePtr> parseFrom(TokenCursor& cursor) {
    std::vector<TableSourcePtr> sources;
    do {
        sources.push_back(parseJoined(cursor));
    } while (cursor.accept(TokenKind::Comma));
    return sources;
}

}  // namespace basalt::embedded
