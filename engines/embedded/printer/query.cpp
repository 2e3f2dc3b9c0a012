#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void write(Writer& writer, const QueryBody& body);

void writeOperandBody(Writer& writer, const QueryBody& body, bool parenthesize) {
    if (parenthesize) writer << "(";
    write(writer, body);
    if (parenthesize) writer << ")";
}

void write(Writer& writer, const SetOperation& node) {
    const auto isIntersect = [](const QueryBody& body) {
        return body.kind == QueryBodyKind::SetOperation && as<SetOperation>(body).op == SetOperator::Intersect;
    };
    const bool tight = node.op == SetOperator::Intersect;
    const bool leftCompound = node.left->kind == QueryBodyKind::SetOperation;
    const bool rightCompound = node.right->kind == QueryBodyKind::SetOperation;
    writeOperandBody(writer, *node.left, leftCompound && (writer.all() || (tight && !isIntersect(*node.left))));
    switch (node.op) {
        case SetOperator::Union:
            writer << " UNION ";
            break;
        case SetOperator::UnionAll:
            writer << " UNION ALL ";
            break;
        case SetOperator::Except:
            writer << " EXCEPT ";
            break;
        case SetOperator::Intersect:
            writer << " INTERSECT ";
            break;
    }
    writeOperandBody(writer, *node.right, rightCompound && (writer.all() || tight || !isIntersect(*node.right)));
}

void write(Writer& writer, const Select& select) {
    writer << "SELECT ";
    if (select.distinct) writer << "DISTINCT ";
    if (select.top) {
        write(writer, *select.top);
        writer << " ";
    }
    writeList(writer, select.items, [&](const SelectItem& item) { write(writer, item); });
    if (!select.into.empty()) {
        writer << " INTO ";
        write(writer, select.into);
    }
    writeFrom(writer, select.from);
    if (select.where) {
        writer << " WHERE ";
        write(writer, *select.where);
    }
    if (!select.groupBy.empty()) {
        writer << " GROUP BY ";
        writeExpressions(writer, select.groupBy);
    }
    if (select.having) {
        writer << " HAVING ";
        write(writer, *select.having);
    }
}

void write(Writer& writer, const QueryBody& body) {
    if (body.kind == QueryBodyKind::Select) {
        write(writer, as<Select>(body));
    } else {
        write(writer, as<SetOperation>(body));
    }
}

void write(Writer& writer, const ForXmlClause& clause) {
    switch (clause.mode) {
        case ForXmlClause::Mode::Raw:
            writer << " FOR XML RAW";
            break;
        case ForXmlClause::Mode::Auto:
            writer << " FOR XML AUTO";
            break;
        case ForXmlClause::Mode::Path:
            writer << " FOR XML PATH";
            break;
    }
    if (clause.elementName) writer << "(" << print(writer.literals()[*clause.elementName]) << ")";
    if (clause.type) writer << ", TYPE";
}

void writeAlias(Writer& writer, const TableSource& source) {
    if (source.alias.empty()) return;
    writer << " AS ";
    write(writer, source.alias);
    if (!source.columnAliases.empty()) writeNames(writer, source.columnAliases);
}

void writeRow(Writer& writer, const std::vector<ExpressionPtr>& row) {
    writer << "(";
    writeExpressions(writer, row);
    writer << ")";
}

std::string_view spellingOf(JoinKind kind) {
    switch (kind) {
        case JoinKind::Inner:
            return " INNER JOIN ";
        case JoinKind::Left:
            return " LEFT JOIN ";
        case JoinKind::Right:
            return " RIGHT JOIN ";
        case JoinKind::Full:
            return " FULL JOIN ";
        case JoinKind::Cross:
            return " CROSS JOIN ";
        case JoinKind::CrossApply:
            return " CROSS APPLY ";
        case JoinKind::OuterApply:
            return " OUTER APPLY ";
    }
    return {};
}

void write(Writer& writer, const Join& join) {
    write(writer, *join.left);
    writer << spellingOf(join.joinKind);
    const bool parenthesize = join.right->kind == TableSourceKind::Join;
    if (parenthesize) writer << "(";
    write(writer, *join.right);
    if (parenthesize) writer << ")";
    if (join.condition) {
        writer << " ON ";
        write(writer, *join.condition);
    }
}

}  // namespace

std::string_view spellingOf(AssignmentOperator op) {
    switch (op) {
        case AssignmentOperator::Set:
            return " = ";
        case AssignmentOperator::Add:
            return " += ";
        case AssignmentOperator::Subtract:
            return " -= ";
        case AssignmentOperator::Multiply:
            return " *= ";
        case AssignmentOperator::Divide:
            return " /= ";
        case AssignmentOperator::Modulo:
            return " %= ";
        case AssignmentOperator::BitAnd:
            return " &= ";
        case AssignmentOperator::BitOr:
            return " |= ";
        case AssignmentOperator::BitXor:
            return " ^= ";
    }
    return {};
}

void write(Writer& writer, const TopClause& top) {
    writer << "TOP (";
    write(writer, *top.count);
    writer << ")";
    if (top.percent) writer << " PERCENT";
    if (top.withTies) writer << " WITH TIES";
}

void write(Writer& writer, const SelectItem& item) {
    switch (item.kind) {
        case SelectItemKind::Star:
            if (!item.qualifier.empty()) {
                write(writer, item.qualifier);
                writer << ".";
            }
            writer << "*";
            break;
        case SelectItemKind::Assignment:
            writer << item.variable << spellingOf(item.op);
            write(writer, *item.expression);
            break;
        case SelectItemKind::Expression:
            write(writer, *item.expression);
            if (!item.alias.empty()) {
                writer << " AS ";
                write(writer, item.alias);
            }
            break;
    }
}

void write(Writer& writer, const TableSource& source) {
    switch (source.kind) {
        case TableSourceKind::Table: {
            const auto& table = as<NamedTable>(source);
            write(writer, table.name);
            writeAlias(writer, source);
            if (!table.hints.empty()) {
                writer << " WITH (";
                writeList(writer, table.hints, [&](const std::string& hint) { writer << hint; });
                writer << ")";
            }
            break;
        }
        case TableSourceKind::Variable:
            writer << as<VariableTable>(source).name;
            writeAlias(writer, source);
            break;
        case TableSourceKind::Derived:
            writer << "(";
            write(writer, *as<DerivedTable>(source).query);
            writer << ")";
            writeAlias(writer, source);
            break;
        case TableSourceKind::Values:
            writer << "(VALUES ";
            writeList(writer, as<ValuesTable>(source).rows,
                      [&](const std::vector<ExpressionPtr>& row) { writeRow(writer, row); });
            writer << ")";
            writeAlias(writer, source);
            break;
        case TableSourceKind::Function:
            write(writer, as<FunctionTable>(source).name);
            writeRow(writer, as<FunctionTable>(source).arguments);
            writeAlias(writer, source);
            break;
        case TableSourceKind::Join:
            write(writer, as<Join>(source));
            break;
    }
}

void writeFrom(Writer& writer, const std::vector<TableSourcePtr>& from) {
    if (from.empty()) return;
    writer << " FROM ";
    writeList(writer, from, [&](const TableSourcePtr& source) { write(writer, *source); });
}

void writeWith(Writer& writer, const std::vector<CommonTableExpression>& with) {
    if (with.empty()) return;
    writer << "WITH ";
    writeList(writer, with, [&](const CommonTableExpression& item) {
        write(writer, item.name);
        if (!item.columns.empty()) {
            writer << " ";
            writeNames(writer, item.columns);
        }
        writer << " AS (";
        write(writer, *item.query);
        writer << ")";
    });
    writer << " ";
}

void write(Writer& writer, const QueryExpression& query) {
    writeWith(writer, query.with);
    write(writer, *query.body);
    if (!query.orderBy.empty()) {
        writer << " ORDER BY ";
        writeList(writer, query.orderBy, [&](const OrderItem& item) { write(writer, item); });
    }
    if (query.offset) {
        writer << " OFFSET ";
        writeOperand(writer, *query.offset);
        writer << " ROWS";
        if (query.fetch) {
            writer << " FETCH NEXT ";
            writeOperand(writer, *query.fetch);
            writer << " ROWS ONLY";
        }
    }
    if (query.forXml) write(writer, *query.forXml);
    if (query.maxRecursion) writer << " OPTION (MAXRECURSION " << std::to_string(*query.maxRecursion) << ")";
}

}  // namespace basalt::embedded
