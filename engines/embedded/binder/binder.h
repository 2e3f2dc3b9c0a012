// From the parsed tree to the bound one: names are resolved through the catalog, expressions get SQL Server's types,
// and conversions are inserted where T-SQL converts by itself.
//
//   Binder binder(catalog, {.text = batch.text, .literals = &batch.literals});
//   std::unique_ptr<BoundQuery> q = binder.query(*select.query, nullptr);
//
// Errors are DatabaseError with SQL Server's number, wording and the place in the text. The members stand in one file
// for each statement or kind of expression.
#pragma once

#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/ast/batch.h"
#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/ast/expression.h"
#include "engines/embedded/ast/query.h"
#include "engines/embedded/ast/table_source.h"
#include "engines/embedded/binder/bound_query.h"
#include "engines/embedded/binder/bound_statement.h"
#include "engines/embedded/binder/row_by_row.h"
#include "engines/embedded/binder/scope.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// The types of the variables that a statement may name.
class VariableTypes {
public:
    virtual ~VariableTypes() = default;
    // Null when no such variable is declared. The name has its @.
    [[nodiscard]] virtual const SqlType* typeOf(std::string_view name) const = 0;
    // The catalog's name of a table variable (@t), empty when there is none.
    [[nodiscard]] virtual std::string tableOf(std::string_view name) const = 0;
};

struct BinderInput {
    std::string_view text;                   // of the batch, for error messages
    const LiteralTable* literals = nullptr;  // of the batch
    std::span<const SqlType> markers = {};   // types of the `?`
    const VariableTypes* variables = nullptr;
    // Stored texts (views, defaults, checks) outlive the batch: their literals stand in the statement itself.
    bool inlineLiterals = false;
    // Takes the names of the functions of users that the statement runs, those of its views among them; may be null.
    std::set<std::string>* called = nullptr;
};

class Binder {
public:
    Binder(Catalog& catalog, const BinderInput& input) : catalog_(catalog), input_(input) {}

    // --- queries (query.cpp, select.cpp, source.cpp) ---
    [[nodiscard]] std::unique_ptr<BoundQuery> query(const ast::QueryExpression& query, Scope* outer);
    // A whole SELECT statement, with its variable assignments.
    [[nodiscard]] BoundSelectStatement selectStatement(const ast::SelectStatement& statement);

    // --- changes (insert.cpp, update.cpp, delete.cpp) ---
    [[nodiscard]] BoundInsert insert(const ast::InsertStatement& statement, bool explicitIdentity);
    [[nodiscard]] BoundUpdate update(const ast::UpdateStatement& statement);
    [[nodiscard]] BoundDelete remove(const ast::DeleteStatement& statement);

    // --- expressions (expression.cpp, arithmetic.cpp, condition.cpp, function.cpp, aggregate.cpp) ---
    [[nodiscard]] BoundPtr expression(const ast::Expression& expression, Scope* scope);
    [[nodiscard]] BoundPtr condition(const ast::Expression& expression, Scope* scope);
    // A value on its way into a column: converts as an assignment does and guards the length.
    [[nodiscard]] BoundPtr assigned(BoundPtr value, const TableColumn& column, std::string_view table,
                                    SourceRange range);

    // --- conversions (conversion.cpp) ---
    // Converts as T-SQL does by itself; no code when the stored form is the same.
    [[nodiscard]] BoundPtr cast(BoundPtr value, const SqlType& to);
    [[nodiscard]] BoundPtr castExplicitly(BoundPtr value, const SqlType& to, BoundPtr style, bool tries);
    // Both operands at their common type.
    void unify(BoundPtr& a, BoundPtr& b);
    // Throws 206 where not even CAST would convert.
    void refuseClash(const SqlType& from, const SqlType& to, SourceRange range) const;
    // The same, and 257 where only CAST would.
    void requireImplicit(const SqlType& from, const SqlType& to, SourceRange range) const;
    void unifyForComparison(BoundPtr& a, BoundPtr& b);

    // --- orders of texts (collation.cpp) ---
    // By which the parts compare with each other; fails where two COLLATE contradict each other.
    [[nodiscard]] TextOrder orderOf(const std::vector<const BoundExpression*>& parts, SourceRange range) const;
    // Lets the first operand of a comparison bring the order that all of them ask for.
    void settleOrder(BoundPtr& first, const std::vector<const BoundExpression*>& others, SourceRange range) const;
    // Fails for a collation that columns cannot have.
    void requireOwnCollation(const ast::Identifier& name) const;

    // The plan depends on the lengths of the texts in the expression from now on.
    void relyOnLength(const BoundExpression& value);
    // The integer that the expression writes down, fixed for the plan; nothing when it is no literal.
    [[nodiscard]] std::optional<std::int64_t> fixedInteger(const ast::Expression& expression);
    [[nodiscard]] std::optional<std::string> fixedText(const ast::Expression& expression);
    [[nodiscard]] SqlType dataType(const ast::DataType& type) const;

    // Whether both say the same. Literals that have to be equal for it are fixed for the plan.
    [[nodiscard]] bool sameExpression(const BoundExpression& a, const BoundExpression& b) const;

    // --- errors ---
    [[noreturn]] void fail(int number, const std::string& message, SourceRange range) const;
    [[noreturn]] void unsupported(const std::string& construct, SourceRange range) const;

    [[nodiscard]] Catalog& catalog() { return catalog_; }
    // The default of a column as a value, NULL when it has none.
    [[nodiscard]] BoundPtr defaultOf(const TableColumn& column);

private:
    struct CommonTable {
        std::string name;
        std::string sqlName;
        std::vector<SourceColumn> columns;
        int misnamed = 0;  // the error of naming it while its query is read; 0 when it may be named
    };
    static constexpr int kNoAnchor = 246;
    static constexpr int kNoUnion = 252;

    // expression.cpp
    BoundPtr literal(const ast::LiteralExpression& expression);
    BoundPtr variable(const std::string& name, SourceRange range);
    BoundPtr runningVariable(const std::string& name, SourceRange range);
    BoundPtr systemVariable(const ast::SystemVariableExpression& expression);
    BoundPtr column(const ast::ColumnExpression& expression, Scope* scope);
    BoundPtr caseExpression(const ast::CaseExpression& expression, Scope* scope);
    BoundPtr subquery(const ast::SubqueryExpression& expression, Scope* scope);
    [[nodiscard]] TextOrder collation(const ast::Identifier& name) const;
    BoundPtr collated(const ast::CollateExpression& expression, Scope* scope);
    BoundPtr chosen(std::vector<BoundPtr> conditions, std::vector<BoundPtr> values, BoundPtr otherwise,
                    SourceRange range);
    // arithmetic.cpp
    BoundPtr unary(const ast::UnaryExpression& expression, Scope* scope);
    BoundPtr binary(const ast::BinaryExpression& expression, Scope* scope);
    BoundPtr operation(ast::BinaryOperator op, BoundPtr left, BoundPtr right, SourceRange range);
    BoundPtr decimalOperation(ast::BinaryOperator op, BoundPtr left, BoundPtr right);
    // A number with writtenDigits in another type that holds it.
    static BoundPtr asWritten(BoundPtr number, const SqlType& to);
    BoundPtr integerOperation(ast::BinaryOperator op, BoundPtr left, BoundPtr right, TypeKind kind);
    // condition.cpp
    BoundPtr comparison(ast::ComparisonOperator op, BoundPtr left, BoundPtr right, SourceRange range);
    // Fails with 116 where the query gives more or fewer columns.
    std::unique_ptr<BoundQuery> oneColumnQuery(const ast::QueryExpression& expression, Scope* scope);
    // Brings the operand and the query's column to one type, which it gives.
    SqlType compareWithColumn(BoundPtr& operand, BoundQuery& query);
    BoundPtr in(const ast::InExpression& expression, Scope* scope);
    BoundPtr like(const ast::LikeExpression& expression, Scope* scope);
    // quantified.cpp
    BoundPtr quantified(const ast::QuantifiedExpression& expression, Scope* scope);
    // function.cpp, aggregate.cpp
    BoundPtr function(const ast::FunctionExpression& expression, Scope* scope);
    BoundPtr aggregate(const ast::FunctionExpression& expression, Scope* scope);
    // user_function.cpp
    BoundPtr userFunction(const ast::FunctionExpression& call, Scope* scope);
    // One value a parameter, converted to its type.
    std::vector<BoundPtr> userArguments(const ast::CreateFunctionStatement& function, const ast::Batch& definition,
                                        const std::vector<ast::ExpressionPtr>& arguments, const ast::ObjectName& name,
                                        Scope* scope, SourceRange range);
    std::unique_ptr<BoundOver> over(const ast::OverClause& clause, Scope* scope);
    // common_table.cpp
    void commonTables(const std::vector<ast::CommonTableExpression>& with, std::vector<BoundCommonTable>& into);
    // The columns that a common table shows, by their generated names.
    std::vector<SourceColumn> columnsOf(const ast::CommonTableExpression& table,
                                        const std::vector<OutputColumn>& outputs) const;
    // The queries between UNION ALL, of which those behind others may name the table itself. Leaves the table in sight.
    std::unique_ptr<BoundQuery> unionOfParts(const ast::CommonTableExpression& table, const std::string& sqlName);
    // Fails where the part, which names the table, is not one that the server repeats.
    void requireRepeatable(const BoundBody& part, const ast::QueryBody& written, const std::string& sqlName,
                           const std::string& name) const;
    // query.cpp
    // A column of nothing but untyped NULLs is an int.
    static void settleNulls(std::vector<OutputColumn>& columns);
    // A side of a set operation.
    std::unique_ptr<BoundBody> part(const ast::QueryBody& part, Scope* outer, std::vector<OutputColumn>& columns);
    void requireSameCount(const std::vector<OutputColumn>& left, const std::vector<OutputColumn>& right,
                          SourceRange range) const;
    std::unique_ptr<BoundBody> body(const ast::QueryBody& body, Scope* outer, std::vector<OutputColumn>& columns,
                                    BoundQuery& query, const ast::QueryExpression* whole);
    std::unique_ptr<BoundBody> setOperation(const ast::SetOperation& operation, Scope* outer,
                                            std::vector<OutputColumn>& columns);
    void convertColumns(BoundBody& body, const std::vector<OutputColumn>& to);
    // Of the column that an ORDER BY item names or numbers, counted from 1; 0 when it is another expression.
    std::size_t outputPosition(const ast::Expression& expression, const std::vector<OutputColumn>& columns);
    BoundOrdering ordering(const ast::OrderItem& item, Scope* scope, const std::vector<OutputColumn>& columns,
                           const BoundSelect& select);
    void orderByColumns(const ast::QueryExpression& whole, const std::vector<OutputColumn>& columns, BoundQuery& query);
    // for_xml.cpp: one text made of all rows.
    std::unique_ptr<BoundQuery> xmlOf(std::unique_ptr<BoundQuery> query, const ast::ForXmlClause& clause);
    BoundPtr xmlValue(const ast::XmlValueExpression& expression, Scope* scope);
    // select.cpp
    std::unique_ptr<BoundSelect> select(const ast::Select& select, Scope* outer, std::vector<OutputColumn>& columns,
                                        BoundQuery* query, const ast::QueryExpression* whole);
    void selectItems(const ast::Select& select, Scope& scope, BoundSelect& into, std::vector<OutputColumn>& columns);
    // The first column that stands neither in an aggregate nor in GROUP BY; null when there is none.
    const BoundExpression* ungrouped(const BoundExpression& expression, const std::vector<BoundPtr>& groups,
                                     const Scope& scope) const;
    void checkGrouping(const BoundSelect& select, const BoundQuery* query, const Scope& scope, SourceRange range);
    BoundPtr rowLimit(const ast::Expression& count, Scope* scope, RowLimit clause = RowLimit::Top);
    BoundPtr rowPercent(const ast::Expression& count);
    // The TOP of a DELETE or an UPDATE, on the query of the rows that are changed.
    void limitChange(BoundQuery& query, const ast::TopClause& top);
    // group_restriction.cpp: lets grouped tables of FROM work out only the groups that their joins ask for.
    void restrictGroups(BoundSource& source, BoundQuery& query);
    // text_search.cpp: marks what LIKE can look up.
    void findTextSearches(BoundSelect& select);
    // select_assignment.cpp
    BoundPtr assignedItem(const ast::SelectItem& item, Scope& scope);
    void settleRunningValues(BoundSelectStatement& statement, SourceRange range);
    // source.cpp
    std::unique_ptr<BoundSource> from(const std::vector<ast::TableSourcePtr>& sources, Scope& scope);
    std::unique_ptr<BoundSource> source(const ast::TableSource& source, Scope& scope, Scope* outer);
    std::unique_ptr<BoundSource> namedTable(const ast::NamedTable& source, Scope& scope);
    std::unique_ptr<BoundSource> tableSource(const Table& table, const std::string& shown, Scope& scope,
                                             SourceRange range);
    std::unique_ptr<BoundSource> derived(std::unique_ptr<BoundQuery> query, const ast::TableSource& source,
                                         const std::string& name, Scope& scope);
    // `visible` is what the values may name.
    std::unique_ptr<BoundSource> valuesTable(const ast::ValuesTable& source, Scope& scope, Scope* visible);
    std::unique_ptr<BoundSource> join(const ast::Join& join, Scope& scope, Scope* outer);
    // The right side of APPLY.
    std::unique_ptr<BoundSource> applied(const ast::TableSource& source, Scope& scope, Scope* outer);
    std::unique_ptr<BoundSource> systemTable(const ast::NamedTable& source, Scope& scope);
    // `visible` is what the arguments may name.
    std::unique_ptr<BoundSource> functionTable(const ast::FunctionTable& source, Scope& scope, Scope* visible,
                                               bool applies);
    std::unique_ptr<BoundSource> appliedQuery(std::unique_ptr<BoundQuery> query, const ast::TableSource& source,
                                              const std::string& name, Scope& scope, const Scope& visible);
    // For what stands in another text than the statement.
    [[nodiscard]] BinderInput inputOf(const ast::Batch& stored) const;
    // An expression kept as T-SQL text.
    BoundPtr storedExpression(const std::string& text);
    std::unique_ptr<BoundQuery> viewQuery(const Module& view, SourceRange range);
    void requireViewDepth(SourceRange range) const;
    void addToScope(Scope& scope, ScopeSource source, SourceRange range);
    // The common table expression that the name means here; null when it means none.
    [[nodiscard]] const CommonTable* commonTable(const ast::ObjectName& name) const;
    // change.cpp
    const Table& target(const ast::TableTarget& target);
    // The position of the column, which may be assigned and is not among the others.
    std::size_t assignedColumn(const ast::SetClause& clause, const Table& table,
                               const std::vector<std::size_t>& others) const;
    BoundPtr newValue(const ast::SetClause& clause, const Table& table, std::size_t index, const std::string& alias,
                      Scope& scope);
    // update_by_row.cpp
    BoundUpdate updateByRow(const ast::UpdateStatement& statement);
    BoundPtr assignedByRow(const ast::SetClause& clause, BoundPtr value);
    ScopeSource targetSource(const Table& table, const std::string& name, const std::string& sqlAlias);
    // `shown`: "inserted" or "deleted", the columns of the changed table alone.
    void outputs(const std::optional<ast::OutputClause>& clause, const Table& table, const char* shown,
                 std::vector<BoundItem>& items, std::vector<OutputColumn>& columns);
    void outputs(const ast::OutputClause& clause, Scope& scope, std::vector<BoundItem>& items,
                 std::vector<OutputColumn>& columns);
    // The table that UPDATE or DELETE changes when it has a FROM, and the alias of the source that stands for it there.
    const Table& targetIn(const ast::TableTarget& target, const Scope& scope, std::string& sqlAlias,
                          BoundSelect& select);
    // The same, with these as the sources of the rows and of the scope.
    const Table& targetAmong(const ast::TableTarget& target, const std::vector<ast::TableSourcePtr>& sources,
                             Scope& scope, std::string& sqlAlias, BoundSelect& select);
    void addKey(const Table& table, const std::string& sqlAlias, BoundSelect& select, SourceRange range);
    // Whether OUTPUT names rows as they were or other tables.
    [[nodiscard]] bool showsMoreThanInserted(const ast::UpdateStatement& statement) const;
    // Whether OUTPUT names other tables than the side ("inserted", "deleted"). What only looks like it may count too.
    [[nodiscard]] bool showsOthers(const std::optional<ast::OutputClause>& output, std::string_view side) const;
    // row_by_row.cpp
    [[nodiscard]] RowByRow rowsOf(const Table& table, const std::string& alias, std::unique_ptr<BoundSelect> select,
                                  SourceRange range);
    // `joined`: there is a FROM, whose rows may be without one of the table or meet it several times.
    std::unique_ptr<BoundQuery> readFirst(RowByRow&& rows, std::vector<BoundCommonTable> with,
                                          const std::optional<ast::TopClause>& top, bool joined);
    // The condition by which the change finds its row.
    static BoundPtr isRowOf(const BoundQuery& rows, const Table& table, const std::string& alias);

    [[nodiscard]] std::string newAlias() { return "s" + std::to_string(++aliases()); }
    [[nodiscard]] int& aliases() { return sharedAliases_ != nullptr ? *sharedAliases_ : aliases_; }

    Catalog& catalog_;
    BinderInput input_;
    std::vector<CommonTable> commonTables_;
    // Of a function that stands in FROM as its query: what its parameters are.
    struct Parameter {
        std::string name;
        BoundPtr value;
    };
    std::vector<Parameter> parameters_;
    // While the items of SELECT @v = ... are read: the variables that the statement assigns, with the values that items
    // read so far give them in the same row.
    struct RunningVariable {
        std::string name;
        BoundPtr value;  // null before its item
    };
    std::vector<RunningVariable> running_;
    bool byRow_ = false;  // they are those of an UPDATE
    static constexpr std::size_t kMostExpressions = 100'000;
    static constexpr std::size_t kExpressionsALetter = 8;
    std::size_t expressions_ = 0;  // bound so far
    int aliases_ = 0;
    int* sharedAliases_ = nullptr;  // of the statement that a view is part of
    int viewDepth_ = 0;
    int maxRecursion_ = 100;  // of the statement
};

// The operator in +=, -= and their kin.
[[nodiscard]] ast::BinaryOperator operatorOf(ast::AssignmentOperator op);

// As SQLite writes it.
[[nodiscard]] const char* symbol(ast::ComparisonOperator op);

// A value of the session as an expression, a parameter of the statement.
[[nodiscard]] BoundPtr boundSystemValue(SystemValue value);

}  // namespace basalt::embedded
