// FOR XML PATH: the rows of a query as one text, the customary way to join texts of several rows.
#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

namespace {

SqlType wholeText() {
    return SqlType::text(TypeKind::NVarChar, kMaxLength);
}

BoundPtr textConstant(std::string text) {
    return boundConstant(std::move(text), wholeText());
}

// Columns without an element of their own.
bool isBare(const std::string& name) {
    return name.empty() || name == "*" || name == "text()";
}

}  // namespace

std::unique_ptr<BoundQuery> Binder::xmlOf(std::unique_ptr<BoundQuery> query, const ast::ForXmlClause& clause) {
    if (clause.mode != ast::ForXmlClause::Mode::Path) unsupported("FOR XML other than PATH", clause.range);
    const std::string alias = newAlias();
    std::string element = "row";
    if (clause.elementName) element = std::string((*input_.literals)[*clause.elementName].text);
    BoundPtr row = textConstant(element.empty() ? std::string() : "<" + element + ">");
    const auto append = [&](BoundPtr part) { row = boundInfix("||", wholeText(), std::move(row), std::move(part)); };
    for (std::size_t i = 0; i < query->columns.size(); ++i) {
        const OutputColumn& column = query->columns[i];
        if (column.name.starts_with("@") || column.name.find('/') != std::string::npos)
            unsupported("FOR XML PATH with the column name " + column.name, clause.range);
        auto value = std::make_unique<BoundExpression>();
        value->kind = BoundKind::Column;
        value->type = column.type;
        value->table = alias;
        value->name = "c" + std::to_string(i + 1);
        value->ownCollation = true;
        BoundPtr text = column.type.isDate() ? castExplicitly(std::move(value), wholeText(), boundInteger(126), false)
                                             : cast(std::move(value), wholeText());
        text = boundCall("t_xml", wholeText(), std::move(text));
        if (!isBare(column.name)) {
            text = boundInfix("||", wholeText(), textConstant("<" + column.name + ">"), std::move(text));
            text = boundInfix("||", wholeText(), std::move(text), textConstant("</" + column.name + ">"));
        }
        // NULL leaves nothing behind.
        append(boundCall("ifnull", wholeText(), std::move(text), textConstant({})));
    }
    if (!element.empty()) append(textConstant("</" + element + ">"));
    auto joined = std::make_unique<BoundExpression>();
    joined->kind = BoundKind::Aggregate;
    joined->name = "group_concat";
    joined->type = wholeText();
    joined->arguments.push_back(std::move(row));
    joined->arguments.push_back(textConstant({}));
    auto select = std::make_unique<BoundSelect>();
    select->items.push_back({std::move(joined), {}});
    select->aggregated = true;
    select->from = std::make_unique<BoundSource>();
    select->from->kind = SourceKind::Query;
    select->from->alias = alias;
    auto result = std::make_unique<BoundQuery>();
    result->with = std::move(query->with);
    // A limit that limits nothing keeps SQLite from dropping the order of the rows.
    if (query->limit == nullptr) query->limit = boundInteger(-1);
    select->from->query = std::move(query);
    result->body = std::make_unique<BoundBody>();
    result->body->select = std::move(select);
    result->columns.push_back({"XML_F52E2B61-18A1-11d1-B105-00805F49916B", wholeText(), true, {}});
    result->singleRow = true;
    return result;
}

}  // namespace basalt::embedded
