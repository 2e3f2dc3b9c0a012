// CREATE, ALTER, DROP.
#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

std::string_view verbOf(DefinitionMode mode) {
    switch (mode) {
        case DefinitionMode::Create:
            return "CREATE ";
        case DefinitionMode::Alter:
            return "ALTER ";
        case DefinitionMode::CreateOrAlter:
            return "CREATE OR ALTER ";
    }
    return {};
}

void writeParameters(Writer& writer, const std::vector<ParameterDefinition>& parameters) {
    writeList(writer, parameters, [&](const ParameterDefinition& parameter) {
        writer << parameter.name << " ";
        write(writer, parameter.type);
        if (parameter.defaultValue) {
            writer << " = ";
            writeOperand(writer, *parameter.defaultValue);
        }
        if (parameter.output) writer << " OUTPUT";
        if (parameter.readOnly) writer << " READONLY";
    });
}

void write(Writer& writer, const AlterTableStatement& alter) {
    writer << "ALTER TABLE ";
    write(writer, alter.name);
    switch (alter.action) {
        case AlterTableStatement::Action::Add:
            writer << " ADD ";
            write(writer, alter.added);
            break;
        case AlterTableStatement::Action::AlterColumn:
            writer << " ALTER COLUMN ";
            write(writer, *alter.altered);
            break;
        case AlterTableStatement::Action::Drop:
            writer << " DROP ";
            writeList(writer, alter.dropped, [&](const AlterTableStatement::DropItem& item) {
                writer << (item.column ? "COLUMN " : "CONSTRAINT ");
                if (item.ifExists) writer << "IF EXISTS ";
                write(writer, item.name);
            });
            break;
        case AlterTableStatement::Action::EnableConstraints:
        case AlterTableStatement::Action::DisableConstraints:
            writer << (alter.action == AlterTableStatement::Action::EnableConstraints ? " CHECK" : " NOCHECK")
                   << " CONSTRAINT ";
            if (alter.allConstraints) {
                writer << "ALL";
            } else {
                writeList(writer, alter.constraints, [&](const Identifier& name) { write(writer, name); });
            }
            break;
    }
}

void write(Writer& writer, const CreateIndexStatement& index) {
    writer << "CREATE ";
    if (index.unique) writer << "UNIQUE ";
    if (index.clustered) writer << (*index.clustered ? "CLUSTERED " : "NONCLUSTERED ");
    writer << "INDEX ";
    write(writer, index.name);
    writer << " ON ";
    write(writer, index.table);
    writer << " ";
    writeKeyColumns(writer, index.columns);
    if (!index.included.empty()) {
        writer << " INCLUDE ";
        writeNames(writer, index.included);
    }
    if (index.where) {
        writer << " WHERE ";
        write(writer, *index.where);
    }
}

void write(Writer& writer, const CreateViewStatement& view) {
    writer << verbOf(view.mode) << "VIEW ";
    write(writer, view.name);
    if (!view.columns.empty()) {
        writer << " ";
        writeNames(writer, view.columns);
    }
    writer << " AS ";
    write(writer, *view.query);
    if (view.checkOption) writer << " WITH CHECK OPTION";
}

void write(Writer& writer, const CreateProcedureStatement& procedure) {
    writer << verbOf(procedure.mode) << "PROCEDURE ";
    write(writer, procedure.name);
    if (!procedure.parameters.empty()) {
        writer << " ";
        writeParameters(writer, procedure.parameters);
    }
    writer << " AS";
    writer.newLine();
    writeStatements(writer, procedure.body);
}

void write(Writer& writer, const CreateFunctionStatement& function) {
    writer << verbOf(function.mode) << "FUNCTION ";
    write(writer, function.name);
    writer << "(";
    writeParameters(writer, function.parameters);
    writer << ") RETURNS ";
    switch (function.returns) {
        case CreateFunctionStatement::Returns::Scalar:
            write(writer, function.type);
            break;
        case CreateFunctionStatement::Returns::TableVariable:
            writer << function.variable << " TABLE (";
            write(writer, function.table);
            writer << ")";
            break;
        case CreateFunctionStatement::Returns::InlineTable:
            writer << "TABLE AS RETURN (";
            write(writer, *function.query);
            writer << ")";
            return;
    }
    writer << " AS BEGIN";
    writer.indent();
    writer.newLine();
    writeStatements(writer, function.body);
    writer.outdent();
    writer.newLine();
    writer << "END";
}

std::string_view nameOf(ObjectType type) {
    switch (type) {
        case ObjectType::Table:
            return "TABLE ";
        case ObjectType::View:
            return "VIEW ";
        case ObjectType::Procedure:
            return "PROCEDURE ";
        case ObjectType::Function:
            return "FUNCTION ";
        case ObjectType::Index:
            return "INDEX ";
        case ObjectType::Trigger:
            return "TRIGGER ";
    }
    return {};
}

void write(Writer& writer, const DropStatement& drop) {
    writer << "DROP " << nameOf(drop.type);
    if (drop.ifExists) writer << "IF EXISTS ";
    writeList(writer, drop.items, [&](const DropStatement::Item& item) {
        write(writer, item.name);
        if (!item.table.empty()) {
            writer << " ON ";
            write(writer, item.table);
        }
    });
}

}  // namespace

void writeDefinitionStatement(Writer& writer, const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::CreateTable: {
            const auto& table = as<CreateTableStatement>(statement);
            writer << "CREATE TABLE ";
            write(writer, table.name);
            writer << " (";
            write(writer, table.definition);
            writer << ")";
            break;
        }
        case StatementKind::AlterTable:
            write(writer, as<AlterTableStatement>(statement));
            break;
        case StatementKind::CreateIndex:
            write(writer, as<CreateIndexStatement>(statement));
            break;
        case StatementKind::CreateView:
            write(writer, as<CreateViewStatement>(statement));
            break;
        case StatementKind::CreateProcedure:
            write(writer, as<CreateProcedureStatement>(statement));
            break;
        case StatementKind::CreateFunction:
            write(writer, as<CreateFunctionStatement>(statement));
            break;
        default:
            write(writer, as<DropStatement>(statement));
            break;
    }
}

}  // namespace basalt::embedded
