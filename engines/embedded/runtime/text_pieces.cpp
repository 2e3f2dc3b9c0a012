#include "engines/embedded/runtime/text_pieces.h"

#include <algorithm>
#include <memory>

#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/row_table.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

// Fewer characters would hardly narrow anything.
constexpr std::size_t kShortestNeedle = 3;
// More characters would make the pieces larger and hardly tell more texts apart.
constexpr std::size_t kLongestPiece = 8;

// A text with all characters folded, and where each begins.
struct Folded {
    std::string bytes;
    std::vector<std::size_t> starts;  // one more than there are characters

    void add(char32_t character) {
        appendCharacter(bytes, foldedCharacter(character));
        // What has no form of its own still counts as a character.
        if (bytes.size() == starts.back()) appendCharacter(bytes, U'\uFFFD');
        starts.push_back(bytes.size());
    }
    [[nodiscard]] std::size_t count() const { return starts.size() - 1; }
    [[nodiscard]] std::string_view part(std::size_t from, std::size_t to) const {
        return std::string_view(bytes).substr(starts[from], starts[to] - starts[from]);
    }
};

struct Pieces : RowTable {
    explicit Pieces(void*) {}
    // The triggers that keep the pieces read it, whoever has made the file.
    static constexpr bool kInnocuous = true;
    static std::string declaration() { return "CREATE TABLE x(value, source HIDDEN)"; }
    static int bestIndex(sqlite3_index_info* info);
    static void failed(const DatabaseError&) {}
};

int Pieces::bestIndex(sqlite3_index_info* info) {
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        if (constraint.iColumn != 1 || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ || constraint.usable == 0) continue;
        info->aConstraintUsage[i].argvIndex = 1;
        info->aConstraintUsage[i].omit = 1;
        info->estimatedCost = 20;
        info->estimatedRows = 20;
        return SQLITE_OK;
    }
    return SQLITE_CONSTRAINT;
}

// The rows of t_pieces.
struct PiecesCursor : RowCursor {
    std::vector<std::string> pieces;
    std::size_t at = 0;

    void start(Pieces&, std::span<sqlite3_value* const> arguments) {
        pieces.clear();
        at = 0;
        if (arguments.size() != 1 || sqlite3_value_type(arguments[0]) == SQLITE_NULL) return;
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
        if (text == nullptr) throw std::bad_alloc();
        pieces = piecesOf({text, static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]))});
    }
    void advance() { ++at; }
    [[nodiscard]] bool atEnd() const { return at >= pieces.size(); }
    void column(int index, sqlite3_context* context) const {
        if (index != 0) return;
        sqlite3_result_blob64(context, pieces[at].data(), pieces[at].size(), SQLITE_TRANSIENT);
    }
};

}  // namespace

std::vector<std::string> piecesOf(std::string_view text) {
    Folded folded{{}, {0}};
    for (std::size_t offset = 0; offset < text.size();)
        folded.add(nextCharacter(text, offset));
    std::vector<std::string> pieces;
    for (std::size_t i = 0; i + kShortestNeedle <= folded.count(); ++i)
        pieces.emplace_back(folded.part(i, std::min(i + kLongestPiece, folded.count())));
    std::sort(pieces.begin(), pieces.end());
    pieces.erase(std::unique(pieces.begin(), pieces.end()), pieces.end());
    return pieces;
}

std::optional<std::string> needleOf(std::string_view pattern) {
    Folded longest{{}, {0}};
    Folded current{{}, {0}};
    const auto close = [&] {
        if (current.count() > longest.count()) longest = current;
        current = {{}, {0}};
    };
    for (std::size_t offset = 0; offset < pattern.size();) {
        const char32_t character = nextCharacter(pattern, offset);
        if (character == U'[') break;  // what follows may belong to the set
        if (character == U'%' || character == U'_') {
            close();
        } else {
            current.add(character);
        }
    }
    close();
    if (longest.count() < kShortestNeedle) return std::nullopt;
    // Of a long needle the end, since what is numbered begins alike.
    const std::size_t from = longest.count() - std::min(longest.count(), kLongestPiece);
    return std::string(longest.part(from, longest.count()));
}

void addTextPieces(SqliteDatabase& database) {
    addRowTable<Pieces, PiecesCursor>(database, "t_pieces", nullptr, nullptr);
    addFunction(database, "t_needle", 1, [](Call& call) {
        const std::optional<std::string> needle = needleOf(call.text(0));
        needle ? call.result(Value(Bytes(needle->begin(), needle->end()))) : call.resultNull();
    });
    addFunction(database, "t_needle_end", 1, [](Call& call) {
        const std::optional<std::string> needle = needleOf(call.text(0));
        if (!needle) return call.resultNull();
        Bytes end(needle->begin(), needle->end());
        end.push_back(0xFF);  // no byte of UTF-8
        call.result(Value(std::move(end)));
    });
}

}  // namespace basalt::embedded
