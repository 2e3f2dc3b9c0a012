#include <algorithm>
#include <cstdio>
#include <optional>

#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/decimal_codec.h"
#include "engines/embedded/runtime/steps.h"

namespace basalt::embedded {

namespace {

std::string hexadecimal(const void* data, std::size_t size) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string result = "x'";
    for (std::size_t i = 0; i < size; ++i) {
        const std::uint8_t byte = static_cast<const std::uint8_t*>(data)[i];
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result + "'";
}

bool isComparison(std::string_view op) {
    return op == "=" || op == "<>" || op == "<" || op == "<=" || op == ">" || op == ">=";
}

bool isText(const BoundExpression& expression) {
    return expression.type.storage() == Storage::Text;
}

bool sameSlot(const Slot& a, const Slot& b) {
    return a.source == b.source && a.index == b.index && a.variable == b.variable && a.system == b.system &&
           a.to == b.to;
}

}  // namespace

void SqlWriter::constant(const BoundExpression& expression) {
    struct Visitor {
        std::string operator()(Null) const { return "NULL"; }
        std::string operator()(bool flag) const { return flag ? "1" : "0"; }
        std::string operator()(std::int64_t number) const { return std::to_string(number); }
        std::string operator()(double number) const {
            char buffer[40];
            std::snprintf(buffer, sizeof buffer, "%.17e", number);
            return buffer;
        }
        std::string operator()(const Decimal& number) const {
            const EncodedDecimal encoded = encodeDecimal(number.coefficient());
            return hexadecimal(encoded.bytes.data(), static_cast<std::size_t>(encoded.size));
        }
        std::string operator()(const std::string& text) const {
            // A text literal of SQLite ends at a zero byte.
            if (text.find('\0') == std::string::npos) return sqlText(text);
            return "CAST(" + hexadecimal(text.data(), text.size()) + " AS TEXT)";
        }
        std::string operator()(const Bytes& bytes) const { return hexadecimal(bytes.data(), bytes.size()); }
        std::string operator()(DateTime time) const { return std::to_string(time.ticks); }
    };
    *this << std::visit(Visitor{}, expression.value);
}

bool SqlWriter::lift(const BoundExpression& expression) {
    const bool column = expression.kind == BoundKind::Column &&
                        std::find(outer_->begin(), outer_->end(), expression.table) != outer_->end();
    if (!column && expression.kind != BoundKind::Slot) return false;
    const auto same = [&](const BoundExpression* other) {
        if (other->kind != expression.kind) return false;
        return column ? other->table == expression.table && other->name == expression.name
                      : sameSlot(other->slot, expression.slot);
    };
    const auto found = std::find_if(lifted_.begin(), lifted_.end(), same);
    const auto number = static_cast<std::size_t>(found - lifted_.begin()) + 1;
    if (found == lifted_.end()) lifted_.push_back(&expression);
    // A parameter brings no collation along.
    if (isText(expression)) {
        *this << "(?" << std::to_string(number) << " COLLATE " << sqliteCollation(expression.order) << ")";
    } else {
        *this << "?" << std::to_string(number);
    }
    return true;
}

void SqlWriter::slot(const Slot& slot) {
    // Long lists of literals: only slots of the same literal, marker, variable or value can be the same.
    const auto source = static_cast<std::uint64_t>(slot.source);
    const std::uint64_t key = source << 56 | std::uint64_t{slot.index} << 16 | static_cast<std::uint64_t>(slot.system);
    const auto [first, last] = slotNumbers_.equal_range(key);
    const auto found =
        std::find_if(first, last, [&](const auto& entry) { return sameSlot(slots_[entry.second], slot); });
    if (found != last) {
        *this << "?" << std::to_string(found->second + 1);
        return;
    }
    slotNumbers_.emplace(key, slots_.size());
    slots_.push_back(slot);
    // SQLite numbers these as they come; with many numbers written out it would look each up among all before it.
    *this << "?";
}

void SqlWriter::collated(const BoundExpression& expression) {
    this->expression(expression);
    if (isText(expression) && !expression.ownCollation) *this << " COLLATE " << sqliteCollation(expression.order);
}

void SqlWriter::list(const std::vector<BoundPtr>& expressions) {
    for (std::size_t i = 0; i < expressions.size(); ++i) {
        if (i > 0) *this << ", ";
        expression(*expressions[i]);
    }
}

void SqlWriter::column(const BoundExpression& expression) {
    const std::string name = expression.table.empty() ? expression.name : expression.table + "." + expression.name;
    const auto renamed = renamed_.find(name);
    *this << (renamed == renamed_.end() ? name : renamed->second);
}

void SqlWriter::expression(const BoundExpression& expression) {
    if (outer_ != nullptr && lift(expression)) return;
    switch (expression.kind) {
        case BoundKind::Constant:
            return constant(expression);
        case BoundKind::Slot:
            return slot(expression.slot);
        case BoundKind::Column:
            return column(expression);
        case BoundKind::Call:
            if (steps(expression) || firstOf(expression)) return;
            // In the query of an APPLY the pattern comes as a parameter of another kind.
            if (expression.search != nullptr && outer_ == nullptr) {
                textSearches_.push_back(&expression);
                if (texts_ == Texts::LookUp) lookUp(expression);
            }
            readsUnseen_ = readsUnseen_ || expression.name == kCallUserFunction;
            *this << expression.name << "(";
            list(expression.arguments);
            *this << ")";
            return;
        case BoundKind::Aggregate:
            return aggregate(expression);
        case BoundKind::Infix:
            return infix(expression);
        case BoundKind::Prefix:
            *this << "(" << expression.name << " ";
            this->expression(*expression.arguments[0]);
            *this << ")";
            return;
        case BoundKind::Postfix:
            *this << "(";
            this->expression(*expression.arguments[0]);
            *this << " " << expression.name << ")";
            return;
        case BoundKind::Case:
            return caseExpression(expression);
        case BoundKind::In:
            return in(expression);
        case BoundKind::Between:
            *this << "(";
            collated(*expression.arguments[0]);
            *this << (expression.negated ? " NOT BETWEEN " : " BETWEEN ");
            this->expression(*expression.arguments[1]);
            *this << " AND ";
            this->expression(*expression.arguments[2]);
            *this << ")";
            return;
        case BoundKind::Subquery:
            if (expression.query->singleRow) {
                *this << "(";
                query(*expression.query);
            } else {
                // t_one refuses a second row; without it SQLite would take the first and say nothing.
                *this << "(SELECT t_one(c1, count(*)) FROM (SELECT * FROM (";
                query(*expression.query);
                *this << ") LIMIT 2)";
            }
            *this << ")";
            return;
        case BoundKind::Exists:
            *this << (expression.negated ? "(NOT EXISTS (" : "(EXISTS (");
            query(*expression.query);
            *this << "))";
            return;
    }
}

namespace {

// Calls inside each other that are still written so.
constexpr std::size_t kDeepestCalls = 10;

struct Step {
    std::string name;
    const BoundExpression* first;
    const std::vector<BoundPtr>* arguments;  // the first is the one above
};

// Nothing where the expression is no call of something.
std::optional<Step> stepOf(const BoundExpression& expression) {
    if (expression.kind != BoundKind::Call || expression.arguments.empty() || expression.search != nullptr)
        return std::nullopt;
    const BoundExpression& first = *expression.arguments[0];
    const bool operation = first.kind == BoundKind::Infix && first.arguments.size() == 2 &&
                           expression.arguments.size() == 1 &&
                           (first.name == "+" || first.name == "-" || first.name == "*");
    if (operation && (expression.name == "t_i32" || expression.name == "t_finite"))
        return Step{expression.name + first.name, first.arguments[0].get(), &first.arguments};
    return Step{expression.name, &first, &expression.arguments};
}

bool namesSlot(const BoundExpression& expression) {
    return expression.kind == BoundKind::Slot ||
           std::any_of(expression.arguments.begin(), expression.arguments.end(),
                       [](const BoundPtr& argument) { return namesSlot(*argument); });
}

// Whether it is the same for all rows of a statement.
bool isSettled(const BoundExpression& expression) {
    if (expression.kind == BoundKind::Slot) return expression.slot.source != Slot::Source::Row;
    if (expression.kind == BoundKind::Constant) return true;
    const bool operation = expression.kind == BoundKind::Infix;
    const bool known = expression.kind == BoundKind::Call && expression.search == nullptr &&
                       isStep(expression.name, expression.arguments.size());
    return (operation || known) && std::all_of(expression.arguments.begin(), expression.arguments.end(),
                                               [](const BoundPtr& argument) { return isSettled(*argument); });
}

}  // namespace

bool SqlWriter::steps(const BoundExpression& expression) {
    if (nested_) return false;
    std::vector<Step> steps;
    const BoundExpression* innermost = &expression;
    for (std::optional<Step> step = stepOf(expression); step; step = stepOf(*innermost)) {
        innermost = step->first;
        steps.push_back(*std::move(step));
    }
    if (steps.size() < kDeepestCalls) return false;
    // Up to one that SQLite does by itself.
    const auto other = std::find_if(steps.begin(), steps.end(),
                                    [](const Step& step) { return !isStep(step.name, step.arguments->size()); });
    steps.erase(other, steps.end());
    if (steps.size() < kDeepestCalls) return false;
    // Steps are taken anew for each row; a query of its own is worked out once. What SQLite keeps in its schema names
    // no slots, and may hold no query.
    const bool once = outer_ == nullptr && isSettled(expression) && namesSlot(expression);
    *this << (once ? "(SELECT " : "(");
    this->expression(*steps.back().first);
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        *this << " -> t_step(" << sqlText(step->name);
        for (std::size_t i = 1; i < step->arguments->size(); ++i) {
            *this << ", ";
            this->expression(*(*step->arguments)[i]);
        }
        *this << ")";
    }
    *this << ")";
    return true;
}

// ISNULL(a, ISNULL(b, c)) is the first of a, b and c that is not NULL.
bool SqlWriter::firstOf(const BoundExpression& expression) {
    const auto isFirst = [](const BoundExpression& value) {
        return value.kind == BoundKind::Call && value.name == "ifnull";
    };
    if (!isFirst(expression) || !isFirst(*expression.arguments[1])) return false;
    // SQLite's functions take 127 arguments.
    constexpr std::size_t most = 100;
    const BoundExpression* last = &expression;
    *this << "coalesce(";
    for (std::size_t count = 1; isFirst(*last) && count < most; ++count, last = last->arguments[1].get()) {
        this->expression(*last->arguments[0]);
        *this << ", ";
    }
    this->expression(*last);
    *this << ")";
    return true;
}

// Before the LIKE itself, which still has the last word.
void SqlWriter::lookUp(const BoundExpression& like) {
    const BoundTextSearch& search = *like.search;
    *this << "(";
    for (std::size_t i = 0; i < search.key.size(); ++i)
        *this << (i == 0 ? "" : ", ") << search.key[i];
    *this << ") IN (SELECT ";
    for (std::size_t i = 1; i <= search.key.size(); ++i)
        *this << (i == 1 ? "k" : ", k") << std::to_string(i);
    *this << " FROM " << search.pieces << " WHERE piece >= t_needle(";
    expression(*like.arguments[1]);
    *this << ") AND piece < t_needle_end(";
    expression(*like.arguments[1]);
    *this << ")) AND ";
}

// Long chains of AND, OR and || are written as balanced trees: SQLite bounds the height of an expression.
void SqlWriter::chain(const BoundExpression& expression, std::size_t begin, std::size_t end) {
    if (end - begin == 1) return this->expression(*expression.arguments[begin]);
    const std::size_t middle = begin + (end - begin + 1) / 2;
    *this << "(";
    chain(expression, begin, middle);
    *this << " " << expression.name << " ";
    chain(expression, middle, end);
    *this << ")";
}

void SqlWriter::infix(const BoundExpression& expression) {
    if (!isComparison(expression.name)) return chain(expression, 0, expression.arguments.size());
    const BoundExpression& left = *expression.arguments[0];
    const BoundExpression& right = *expression.arguments[1];
    *this << "(";
    this->expression(left);
    // SQLite takes the left side's collation before the right side's, and a column always has one: one that knows
    // nothing of our orders compares bytes. A parameter has none.
    const bool bare = left.kind == BoundKind::Slot || left.kind == BoundKind::Constant;
    if (isText(left) && isText(right) && !left.ownCollation && !(bare && right.ownCollation))
        *this << " COLLATE " << sqliteCollation(right.ownCollation ? right.order : left.order);
    *this << " " << expression.name << " ";
    this->expression(right);
    *this << ")";
}

void SqlWriter::aggregate(const BoundExpression& expression) {
    arranges_ = true;
    *this << expression.name << "(";
    if (expression.distinct) *this << "DISTINCT ";
    if (expression.star) *this << "*";
    for (std::size_t i = 0; i < expression.arguments.size(); ++i) {
        if (i > 0) *this << ", ";
        collated(*expression.arguments[i]);
    }
    *this << ")";
    if (expression.over == nullptr) return;
    *this << " OVER (";
    const BoundOver& over = *expression.over;
    for (std::size_t i = 0; i < over.partitionBy.size(); ++i) {
        *this << (i == 0 ? "PARTITION BY " : ", ");
        collated(*over.partitionBy[i]);
    }
    for (std::size_t i = 0; i < over.orderBy.size(); ++i) {
        *this << (i == 0 ? " ORDER BY " : ", ");
        collated(*over.orderBy[i].expression);
        if (over.orderBy[i].descending) *this << " DESC";
    }
    if (!over.frame.empty()) *this << " " << over.frame;
    *this << ")";
}

void SqlWriter::caseExpression(const BoundExpression& expression) {
    *this << "CASE";
    const BoundExpression* whole = &expression;
    while (true) {
        for (std::size_t i = 0; i + 1 < whole->arguments.size(); i += 2) {
            *this << " WHEN ";
            this->expression(*whole->arguments[i]);
            *this << " THEN ";
            this->expression(*whole->arguments[i + 1]);
        }
        // A CASE behind ELSE is more of the same one.
        if (whole->arguments.back()->kind != BoundKind::Case) break;
        whole = whole->arguments.back().get();
    }
    *this << " ELSE ";
    this->expression(*whole->arguments.back());
    *this << " END";
}

void SqlWriter::in(const BoundExpression& expression) {
    *this << "(";
    collated(*expression.arguments[0]);
    *this << (expression.negated ? " NOT IN (" : " IN (");
    if (expression.query != nullptr) {
        query(*expression.query);
    } else {
        for (std::size_t i = 1; i < expression.arguments.size(); ++i) {
            if (i > 1) *this << ", ";
            this->expression(*expression.arguments[i]);
        }
    }
    *this << "))";
}

}  // namespace basalt::embedded
