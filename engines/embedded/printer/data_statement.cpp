// SELECT, INSERT, UPDATE, DELETE, DBCC CHECKIDENT, TRUNCATE.
#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void write(Writer& writer, const TableTarget& target) {
    if (target.variable.empty()) {
        write(writer, target.name);
    } else {
        writer << target.variable;
    }
}

void write(Writer& writer, const CheckIdentityStatement& check) {
    using Action = CheckIdentityStatement::Action;
    writer << "DBCC CHECKIDENT(";
    if (check.table != nullptr) {
        write(writer, *check.table);
    } else {
        write(writer, check.name);
    }
    if (check.action == Action::Report) writer << ", NORESEED";
    if (check.action == Action::Set) {
        writer << ", RESEED, ";
        write(writer, *check.value);
    }
    writer << (check.silent ? ") WITH NO_INFOMSGS" : ")");
}

void write(Writer& writer, const OutputClause& output) {
    writer << " OUTPUT ";
    writeList(writer, output.items, [&](const SelectItem& item) { write(writer, item); });
    if (output.into) {
        writer << " INTO ";
        write(writer, *output.into);
        if (!output.columns.empty()) {
            writer << " ";
            writeNames(writer, output.columns);
        }
    }
}

void writeTopBefore(Writer& writer, const std::optional<TopClause>& top) {
    if (!top) return;
    write(writer, *top);
    writer << " ";
}

void writeWhere(Writer& writer, const ExpressionPtr& where) {
    if (!where) return;
    writer << " WHERE ";
    write(writer, *where);
}

void write(Writer& writer, const InsertStatement& insert) {
    writeWith(writer, insert.with);
    writer << "INSERT ";
    writeTopBefore(writer, insert.top);
    writer << "INTO ";
    write(writer, insert.target);
    if (!insert.columns.empty()) {
        writer << " ";
        writeNames(writer, insert.columns);
    }
    if (insert.output) write(writer, *insert.output);
    switch (insert.source) {
        case InsertStatement::Source::Values:
            writer << " VALUES ";
            writeList(writer, insert.rows, [&](const std::vector<ExpressionPtr>& row) {
                writer << "(";
                writeExpressions(writer, row);
                writer << ")";
            });
            break;
        case InsertStatement::Source::Query:
            writer << " ";
            write(writer, *insert.query);
            break;
        case InsertStatement::Source::Execute:
            writer << " ";
            write(writer, *insert.execute);
            break;
        case InsertStatement::Source::DefaultValues:
            writer << " DEFAULT VALUES";
            break;
    }
}

void write(Writer& writer, const UpdateStatement& update) {
    writeWith(writer, update.with);
    writer << "UPDATE ";
    writeTopBefore(writer, update.top);
    write(writer, update.target);
    writer << " SET ";
    writeList(writer, update.assignments, [&](const SetClause& clause) {
        if (!clause.variable.empty()) writer << clause.variable;
        if (!clause.column.empty()) {
            if (!clause.variable.empty()) writer << " = ";
            write(writer, clause.column);
        }
        writer << spellingOf(clause.op);
        write(writer, *clause.value);
    });
    if (update.output) write(writer, *update.output);
    writeFrom(writer, update.from);
    writeWhere(writer, update.where);
}

void write(Writer& writer, const DeleteStatement& statement) {
    writeWith(writer, statement.with);
    writer << "DELETE ";
    writeTopBefore(writer, statement.top);
    writer << "FROM ";
    write(writer, statement.target);
    if (statement.output) write(writer, *statement.output);
    writeFrom(writer, statement.from);
    writeWhere(writer, statement.where);
}

}  // namespace

void writeDataStatement(Writer& writer, const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Select:
            write(writer, *as<SelectStatement>(statement).query);
            break;
        case StatementKind::Insert:
            write(writer, as<InsertStatement>(statement));
            break;
        case StatementKind::Update:
            write(writer, as<UpdateStatement>(statement));
            break;
        case StatementKind::Delete:
            write(writer, as<DeleteStatement>(statement));
            break;
        case StatementKind::CheckIdentity:
            write(writer, as<CheckIdentityStatement>(statement));
            break;
        default:
            writer << "TRUNCATE TABLE ";
            write(writer, as<TruncateStatement>(statement).table);
            break;
    }
}

}  // namespace basalt::embedded
