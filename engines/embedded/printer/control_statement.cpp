// The procedural statements.
#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void writeBlock(Writer& writer, std::string_view begin, const Statements& statements, std::string_view end) {
    writer << begin;
    if (!statements.empty()) {
        writer.indent();
        writer.newLine();
        writeStatements(writer, statements);
        writer.outdent();
    }
    writer.newLine();
    writer << end;
}

void writeNested(Writer& writer, const Statement& statement) {
    writer.indent();
    writer.newLine();
    write(writer, statement);
    writer.outdent();
}

void write(Writer& writer, const DeclareStatement& declare) {
    writer << "DECLARE ";
    writeList(writer, declare.variables, [&](const DeclareStatement::Variable& variable) {
        writer << variable.name << " ";
        if (variable.table) {
            writer << "TABLE (";
            write(writer, *variable.table);
            writer << ")";
            return;
        }
        write(writer, variable.type);
        if (variable.initial) {
            writer << " = ";
            write(writer, *variable.initial);
        }
    });
}

void write(Writer& writer, const SetOptionStatement& set) {
    writer << "SET ";
    writeList(writer, set.options, [&](const std::string& option) { writer << option; });
    if (!set.table.empty()) {
        writer << " ";
        write(writer, set.table);
    }
    if (set.on) writer << (*set.on ? " ON" : " OFF");
    if (!set.word.empty()) writer << " " << set.word;
    if (set.value) {
        writer << " ";
        writeOperand(writer, *set.value);
    }
}

void write(Writer& writer, const IfStatement& statement) {
    writer << "IF ";
    write(writer, *statement.condition);
    writeNested(writer, *statement.then);
    if (statement.otherwise) {
        writer.newLine();
        writer << "ELSE";
        writeNested(writer, *statement.otherwise);
    }
}

void write(Writer& writer, const RaisErrorStatement& raise) {
    writer << "RAISERROR(";
    writeOperand(writer, *raise.message);
    writer << ", ";
    writeOperand(writer, *raise.severity);
    writer << ", ";
    writeOperand(writer, *raise.state);
    for (const ExpressionPtr& argument : raise.arguments) {
        writer << ", ";
        writeOperand(writer, *argument);
    }
    writer << ")";
    if (!raise.options.empty()) {
        writer << " WITH ";
        writeList(writer, raise.options, [&](const std::string& option) { writer << option; });
    }
}

void write(Writer& writer, const ThrowStatement& statement) {
    writer << "THROW";
    if (!statement.number) return;
    writer << " ";
    writeOperand(writer, *statement.number);
    writer << ", ";
    writeOperand(writer, *statement.message);
    writer << ", ";
    writeOperand(writer, *statement.state);
}

// Values of arguments never take parentheses.
void writeArgumentValue(Writer& writer, const Expression& value) {
    if (const auto* sign = tryAs<UnaryExpression>(&value)) {
        writer << (sign->op == UnaryOperator::Minus ? "-" : "+");
        write(writer, *sign->operand);
    } else {
        write(writer, value);
    }
}

void writeArguments(Writer& writer, const std::vector<ExecuteArgument>& arguments) {
    writeList(writer, arguments, [&](const ExecuteArgument& argument) {
        if (!argument.name.empty()) writer << argument.name << " = ";
        writeArgumentValue(writer, *argument.value);
        if (argument.output) writer << " OUTPUT";
    });
}

void write(Writer& writer, const TransactionStatement& statement) {
    switch (statement.action) {
        case TransactionStatement::Action::Begin:
            writer << "BEGIN TRANSACTION";
            break;
        case TransactionStatement::Action::Commit:
            writer << "COMMIT TRANSACTION";
            break;
        case TransactionStatement::Action::Rollback:
            writer << "ROLLBACK TRANSACTION";
            break;
        case TransactionStatement::Action::Save:
            writer << "SAVE TRANSACTION";
            break;
    }
    if (!statement.variable.empty()) writer << " " << statement.variable;
    if (!statement.name.empty()) {
        writer << " ";
        write(writer, statement.name);
    }
}

}  // namespace

void write(Writer& writer, const ExecuteStatement& execute) {
    if (execute.call) {
        writer << "{";
        if (execute.returnMarker) writer << "? = ";
        writer << "call ";
        write(writer, execute.procedure);
        writer << "(";
        writeArguments(writer, execute.arguments);
        writer << ")}";
        return;
    }
    writer << "EXEC ";
    if (execute.text) {
        writer << "(";
        write(writer, *execute.text);
        writer << ")";
        return;
    }
    if (!execute.returnVariable.empty()) writer << execute.returnVariable << " = ";
    if (execute.procedureVariable.empty()) {
        write(writer, execute.procedure);
    } else {
        writer << execute.procedureVariable;
    }
    if (!execute.arguments.empty()) writer << " ";
    writeArguments(writer, execute.arguments);
}

void writeControlStatement(Writer& writer, const Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Declare:
            write(writer, as<DeclareStatement>(statement));
            break;
        case StatementKind::SetVariable: {
            const auto& set = as<SetVariableStatement>(statement);
            writer << "SET " << set.name << " = ";
            write(writer, *set.value);
            break;
        }
        case StatementKind::SetOption:
            write(writer, as<SetOptionStatement>(statement));
            break;
        case StatementKind::If:
            write(writer, as<IfStatement>(statement));
            break;
        case StatementKind::While:
            writer << "WHILE ";
            write(writer, *as<WhileStatement>(statement).condition);
            writeNested(writer, *as<WhileStatement>(statement).body);
            break;
        case StatementKind::Block:
            writeBlock(writer, "BEGIN", as<BlockStatement>(statement).statements, "END");
            break;
        case StatementKind::Break:
            writer << "BREAK";
            break;
        case StatementKind::Continue:
            writer << "CONTINUE";
            break;
        case StatementKind::Return:
            writer << "RETURN";
            if (const ExpressionPtr& value = as<ReturnStatement>(statement).value) {
                writer << " ";
                write(writer, *value);
            }
            break;
        case StatementKind::Goto:
            writer << "GOTO ";
            write(writer, as<GotoStatement>(statement).label);
            break;
        case StatementKind::Label:
            write(writer, as<LabelStatement>(statement).label);
            writer << ":";
            break;
        case StatementKind::Print:
            writer << "PRINT ";
            write(writer, *as<PrintStatement>(statement).message);
            break;
        case StatementKind::RaisError:
            write(writer, as<RaisErrorStatement>(statement));
            break;
        case StatementKind::Throw:
            write(writer, as<ThrowStatement>(statement));
            break;
        case StatementKind::TryCatch:
            writeBlock(writer, "BEGIN TRY", as<TryCatchStatement>(statement).tries, "END TRY");
            writer.newLine();
            writeBlock(writer, "BEGIN CATCH", as<TryCatchStatement>(statement).catches, "END CATCH");
            break;
        case StatementKind::Execute:
            write(writer, as<ExecuteStatement>(statement));
            break;
        default:
            write(writer, as<TransactionStatement>(statement));
            break;
    }
}

}  // namespace basalt::embedded
