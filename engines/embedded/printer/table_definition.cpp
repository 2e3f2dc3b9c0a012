// Columns and constraints.
#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void writeClustered(Writer& writer, std::optional<bool> clustered) {
    if (clustered) writer << (*clustered ? " CLUSTERED" : " NONCLUSTERED");
}

void writeAction(Writer& writer, std::string_view event, ReferentialAction action) {
    switch (action) {
        case ReferentialAction::NoAction:
            return;
        case ReferentialAction::Cascade:
            writer << event << "CASCADE";
            return;
        case ReferentialAction::SetNull:
            writer << event << "SET NULL";
            return;
        case ReferentialAction::SetDefault:
            writer << event << "SET DEFAULT";
            return;
    }
}

void writeForeignKey(Writer& writer, const Constraint& constraint, bool ofColumn) {
    if (!ofColumn) {
        writer << "FOREIGN KEY ";
        writeKeyColumns(writer, constraint.columns);
        writer << " ";
    }
    writer << "REFERENCES ";
    write(writer, constraint.referencedTable);
    if (!constraint.referencedColumns.empty()) {
        writer << " ";
        writeNames(writer, constraint.referencedColumns);
    }
    writeAction(writer, " ON DELETE ", constraint.onDelete);
    writeAction(writer, " ON UPDATE ", constraint.onUpdate);
}

}  // namespace

void writeKeyColumns(Writer& writer, const std::vector<KeyColumn>& columns) {
    writer << "(";
    writeList(writer, columns, [&](const KeyColumn& column) {
        write(writer, column.name);
        if (column.descending) writer << " DESC";
    });
    writer << ")";
}

void writeConstraint(Writer& writer, const Constraint& constraint, bool ofColumn) {
    if (!constraint.name.empty()) {
        writer << "CONSTRAINT ";
        write(writer, constraint.name);
        writer << " ";
    }
    switch (constraint.kind) {
        case ConstraintKind::PrimaryKey:
        case ConstraintKind::Unique:
            writer << (constraint.kind == ConstraintKind::PrimaryKey ? "PRIMARY KEY" : "UNIQUE");
            writeClustered(writer, constraint.clustered);
            if (!ofColumn) {
                writer << " ";
                writeKeyColumns(writer, constraint.columns);
            }
            break;
        case ConstraintKind::ForeignKey:
            writeForeignKey(writer, constraint, ofColumn);
            break;
        case ConstraintKind::Check:
            writer << "CHECK (";
            write(writer, *constraint.expression);
            writer << ")";
            break;
        case ConstraintKind::Default:
            writer << "DEFAULT ";
            writeOperand(writer, *constraint.expression);
            if (!ofColumn) {
                writer << " FOR ";
                write(writer, constraint.forColumn);
            }
            if (constraint.withValues) writer << " WITH VALUES";
            break;
    }
}

void write(Writer& writer, const ColumnDefinition& column) {
    write(writer, column.name);
    if (column.computed) {
        writer << " AS ";
        write(writer, *column.computed);
        if (column.persisted) writer << " PERSISTED";
    } else {
        writer << " ";
        write(writer, column.type);
    }
    if (!column.collation.empty()) {
        writer << " COLLATE ";
        write(writer, column.collation);
    }
    if (column.identity) {
        writer << " IDENTITY(" << std::to_string(column.identity->seed) << ", "
               << std::to_string(column.identity->increment) << ")";
    }
    if (column.nullable) writer << (*column.nullable ? " NULL" : " NOT NULL");
    for (const Constraint& constraint : column.constraints) {
        writer << " ";
        writeConstraint(writer, constraint, true);
    }
}

void write(Writer& writer, const TableDefinition& definition) {
    writeList(writer, definition.columns, [&](const ColumnDefinition& column) { write(writer, column); });
    if (!definition.columns.empty() && !definition.constraints.empty()) writer << ", ";
    writeList(writer, definition.constraints,
              [&](const Constraint& constraint) { writeConstraint(writer, constraint, false); });
}

}  // namespace basalt::embedded
