#include "engines/embedded/generated_sql.h"

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/executor/key_order.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/parser/parser.h"

namespace basalt::embedded {

std::string generatedSql(SqliteDatabase& database, std::string_view query) {
    const ast::Batch batch = parse(query);
    const auto* statement =
        batch.statements.size() == 1 ? ast::tryAs<ast::SelectStatement>(batch.statements.front().get()) : nullptr;
    if (statement == nullptr) throwUnsupported("Another statement than one SELECT", batch.text, {});
    Catalog catalog(database);
    Binder binder(catalog, {.text = batch.text, .literals = &batch.literals, .inlineLiterals = true});
    const BoundSelectStatement bound = binder.selectStatement(*statement);
    SqlWriter writer;
    writer.query(*bound.query);
    keepKeyOrder(database, writer, [&](SqlWriter& again) { again.query(*bound.query); });
    return writer.sql();
}

std::vector<std::string> queryPlan(SqliteDatabase& database, std::string_view query) {
    SqliteStatement steps = database.prepare("EXPLAIN QUERY PLAN " + generatedSql(database, query));
    std::vector<std::string> plan;
    while (steps.step())
        plan.push_back(steps.textAt(3));
    return plan;
}

}  // namespace basalt::embedded
