#include "host/transfer/database_dump.h"

#include <sstream>
#include <stdexcept>
#include <utility>

#include "ado/names.h"
#include "host/services/sql_access.h"
#include "host/transfer/definition_order.h"
#include "host/transfer/definition_text.h"
#include "host/transfer/read_moment.h"
#include "host/transfer/row_order.h"
#include "host/transfer/sql_literal.h"

namespace basalt::host {

namespace {

// A server takes at most a thousand rows in one VALUES list; shorter lists are planned faster.
constexpr std::size_t kRowsInStatement = 100;
constexpr std::size_t kBytesInStatement = 32 * 1024;

// What a module or a table's filtered indexes mean depends on these, and tools do not agree on them.
constexpr const char* kHead =
    "SET NOCOUNT ON\n"
    "SET ANSI_NULLS ON\n"
    "SET QUOTED_IDENTIFIER ON\n";

class DumpWriter {
public:
    // Without a session the rows are left out.
    DumpWriter(Session* session, std::ostream& out) : session_(session), out_(out) {}

    [[nodiscard]] std::vector<BrokenView> takeBroken() { return std::move(broken_); }

    void write(const DatabaseSchema& schema) {
        const DefinitionOrder order = definitionOrder(schema);
        batch(kHead);
        const auto isProcedure = [](const DefinitionOrder::Item& item) {
            return item.module && item.module->kind == ModuleSchema::Kind::Procedure;
        };
        for (const DefinitionOrder::Item& item : order.items) {
            if (item.table) define(*item.table, order);
            if (item.module && !isProcedure(item)) define(*item.module);
        }
        for (const DefinitionOrder::Item& item : order.items) {
            if (item.table && session_) rowsOfTable(*item.table, *session_);
        }
        for (const TableSchema& table : schema.tables) {
            for (const ForeignKeySchema& reference : table.foreignKeys) {
                if (order.late.count(&reference) != 0) batch(referenceText(table, reference));
            }
        }
        for (const DefinitionOrder::Item& item : order.items) {
            if (isProcedure(item)) batch(moduleText(*item.module));
        }
        out_.flush();
        if (!out_) throw std::runtime_error("the dump cannot be written");
    }

private:
    void batch(const std::string& text) {
        out_ << text << (text.ends_with('\n') ? "GO\n" : "\nGO\n");
        // A full disk is noticed here and not after the last of a million rows.
        if (!out_) throw std::runtime_error("the dump cannot be written");
    }

    void define(const ModuleSchema& module) {
        const std::string text = moduleText(module);
        const std::string reason = module.kind == ModuleSchema::Kind::View ? whyUnreadable(module.name) : std::string();
        if (reason.empty()) return batch(text);
        broken_.push_back({module.name, reason});
        std::string commented = "-- This view could not be read any more: " + reason;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            commented += "\n-- " + line;
        batch(commented);
    }

    // Empty when the view can be read.
    std::string whyUnreadable(const std::string& view) {
        if (session_ == nullptr) return {};
        try {
            static_cast<void>(session_->run("SELECT TOP (0) * FROM dbo." + quotedName(view)));
            return {};
        } catch (const DatabaseError& error) {
            // What else may go wrong with a sound view, as a lock that is not given, ends the dump.
            constexpr int kBindingFailed = 4413;
            if (error.category() != ErrorCategory::NotFound && error.nativeCode() != kBindingFailed) throw;
            // The lines behind the first show the place in the view's text.
            const std::string reason = error.what();
            return reason.substr(0, reason.find('\n'));
        }
    }

    void define(const TableSchema& table, const DefinitionOrder& order) {
        std::vector<ForeignKeySchema> references;
        for (const ForeignKeySchema& reference : table.foreignKeys) {
            if (order.late.count(&reference) == 0) references.push_back(reference);
        }
        batch(tableText(table, references));
        for (const IndexSchema& index : table.indexes)
            batch(indexText(table, index));
    }

    void rowsOfTable(const TableSchema& table, Session& session) {
        std::string columns;
        std::vector<std::string> types;
        bool identity = false;
        for (const ColumnSchema& column : table.columns) {
            if (!column.computedText.empty()) continue;
            columns += (columns.empty() ? "" : ", ") + quotedName(column.name);
            types.push_back(column.type);
            identity = identity || column.identity.has_value();
        }
        const RowSet rows =
            rowsOf(session, "SELECT " + columns + " FROM dbo." + quotedName(table.name) + keyOrder(table));
        const std::string name = "dbo." + quotedName(table.name);
        if (rows.rowCount() == 0) return goOnBehind(table, rows, session);
        const std::string head = "INSERT INTO " + name + " (" + columns + ") VALUES\n";
        if (identity) batch("SET IDENTITY_INSERT " + name + " ON");
        std::string statement;
        std::size_t inStatement = 0;
        for (const std::size_t row : rowOrder(table, rows)) {
            if (inStatement == kRowsInStatement || statement.size() > kBytesInStatement) {
                batch(statement);
                statement.clear();
                inStatement = 0;
            }
            statement += inStatement == 0 ? head : ",\n";
            statement += rowText(rows, row, types);
            ++inStatement;
        }
        batch(statement);
        if (identity) batch("SET IDENTITY_INSERT " + name + " OFF");
        goOnBehind(table, rows, session);
    }

    // Numbers that were given to rows which are gone are not given again.
    void goOnBehind(const TableSchema& table, const RowSet& rows, Session& session) {
        std::size_t position = 0;
        for (const ColumnSchema& column : table.columns) {
            if (column.identity) return goOnBehind(table, *column.identity, rows, position, session);
            if (column.computedText.empty()) ++position;
        }
    }

    void goOnBehind(const TableSchema& table, const ColumnSchema::Identity& identity, const RowSet& rows,
                    std::size_t position, Session& session) {
        const std::string name = "dbo." + quotedName(table.name);
        const RowSet counter = rowsOf(session,
                                      "SELECT CAST(last_value AS bigint) FROM sys.identity_columns "
                                      "WHERE object_id = OBJECT_ID(" +
                                          sqlLiteral(name, "nvarchar(300)") + ")");
        if (counter.rowCount() == 0 || counter.column(0).isNull(0)) return;
        std::int64_t last = integerAt(counter, 0, 0);
        if (rows.rowCount() == 0) {
            // A table that has had no row yet begins with the number itself.
            last += identity.increment;
        } else {
            std::int64_t inRows = integerAt(rows, position, 0);
            for (std::size_t row = 1; row < rows.rowCount(); ++row) {
                const std::int64_t number = integerAt(rows, position, row);
                if (identity.increment > 0 ? number > inRows : number < inRows) inRows = number;
            }
            if (inRows == last) return;
        }
        batch("DBCC CHECKIDENT(" + sqlLiteral(name, "nvarchar(300)") + ", RESEED, " + std::to_string(last) +
              ") WITH NO_INFOMSGS");
    }

    static std::string keyOrder(const TableSchema& table) {
        std::string columns;
        for (const KeySchema& key : table.keys) {
            if (!key.primary) continue;
            for (const KeyColumnSchema& column : key.columns)
                columns += (columns.empty() ? " ORDER BY " : ", ") + quotedName(column.name);
        }
        return columns;
    }

    static std::string rowText(const RowSet& rows, std::size_t row, const std::vector<std::string>& types) {
        std::string text;
        for (std::size_t c = 0; c < types.size(); ++c)
            text += (c == 0 ? "(" : ", ") + sqlLiteral(rows.column(c).valueAt(row), types[c]);
        return text + ")";
    }

    Session* session_;
    std::ostream& out_;
    std::vector<BrokenView> broken_;
};

}  // namespace

std::vector<BrokenView> dumpDatabase(Session& session, const SchemaReader& readSchema, std::ostream& out) {
    const ReadMoment moment(session);
    DumpWriter writer(&session, out);
    writer.write(readSchema(session));
    return writer.takeBroken();
}

void dumpDefinitions(const DatabaseSchema& schema, std::ostream& out) {
    DumpWriter(nullptr, out).write(schema);
}

}  // namespace basalt::host
