#include "cli/report_writer.h"

#include "cli/text_table.h"
#include "host/calls/answer.h"

namespace basalt::cli {

namespace {

std::string shown(const Datum& value) {
    if (value.isNull()) return "(nothing)";
    if (value.isBool()) return value.asBool() ? "yes" : "no";
    if (value.isText()) return value.asText();
    return value.toJson();
}

bool isRecords(const Datum& value) {
    if (!value.isList() || value.asList().empty()) return false;
    for (const Datum& item : value.asList()) {
        if (!item.isRecord()) return false;
    }
    return true;
}

// The fields of the first record are the columns; a column is one of numbers when every value of it is.
void writeRecords(std::ostream& out, const Datum::List& records, bool terminal, const std::string& indent) {
    std::vector<TextTable::Title> titles;
    for (const auto& [name, value] : records.front().asRecord())
        titles.push_back({name.empty() ? "COLUMN" + std::to_string(titles.size() + 1) : name, true});
    std::vector<std::vector<std::string>> lines;
    for (const Datum& record : records) {
        std::vector<std::string>& line = lines.emplace_back(titles.size());
        const Datum::Fields& fields = record.asRecord();
        for (std::size_t c = 0; c < titles.size() && c < fields.size(); ++c) {
            const Datum& value = fields[c].second;
            if (!value.isInteger() && !value.isDecimal() && !value.isNull()) titles[c].right = false;
            line[c] = value.isNull() ? "NULL" : shown(value);
        }
    }
    TextTable table(std::move(titles));
    for (std::vector<std::string>& line : lines)
        table.add(std::move(line));
    table.write(out, terminal, indent);
}

void writeValue(std::ostream& out, const std::string& title, const Datum& value, bool terminal,
                const std::string& indent) {
    out << title;
    if (isRecords(value)) {
        out << ":\n";
        writeRecords(out, value.asList(), terminal, indent);
    } else {
        out << ": " << shown(value) << '\n';
    }
}

void writeStatement(std::ostream& out, const SentStatement& statement) {
    out << "  " << statement.component << ' ' << statement.action << ": "
        << (statement.procedure.empty() ? statement.text : statement.procedure) << '\n';
    for (const Argument& argument : statement.parameters)
        out << "    " << argument.name << " = " << (isNull(argument.value) ? "NULL" : toText(argument.value)) << '\n';
}

void writeQuery(std::ostream& out, const host::QueryReport& query, bool terminal) {
    out << "  " << query.name;
    if (!query.active) {
        out << ": closed\n";
        return;
    }
    out << ": " << query.rows.size() << (query.rows.size() == 1 ? " row\n" : " rows\n");
    if (!query.rows.empty()) writeRecords(out, query.rows, terminal, "    ");
}

}  // namespace

void writeReport(std::ostream& out, const host::CallReport& report, bool terminal) {
    writeValue(out, report.function, report.result, terminal, "  ");
    for (const auto& [name, value] : report.out)
        writeValue(out, "  " + name, value, terminal, "    ");
    if (!report.statements.empty()) out << "sent\n";
    for (const SentStatement& statement : report.statements)
        writeStatement(out, statement);
    if (!report.queries.empty()) out << "queries\n";
    for (const host::QueryReport& query : report.queries)
        writeQuery(out, query, terminal);
    if (!report.messages.empty()) out << "messages\n";
    for (const host::MessageReport& message : report.messages) {
        out << "  " << host::describe(message.request);
        if (message.answer) out << ": " << host::answerName(*message.answer);
        out << '\n';
    }
    if (!report.events.empty()) out << "user log\n";
    for (const host::EventReport& event : report.events)
        out << "  part " << event.part << ", permission " << event.permission << ": " << event.text << '\n';
    if (!report.programs.empty()) out << "started\n";
    for (const ProgramStart& program : report.programs)
        out << "  " << program.verb << ' ' << program.file << ' ' << program.parameters << '\n';
}

}  // namespace basalt::cli
