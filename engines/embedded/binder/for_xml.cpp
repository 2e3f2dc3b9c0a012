// FOR XML PATH: the rows of a query as one text, the customary way to join texts of several rows; and what .value()
// makes of it.
#include <algorithm>
#include <array>

#include "ado/names.h"
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

BoundPtr Binder::xmlValue(const ast::XmlValueExpression& expression, Scope* scope) {
    // Of paths there are all of the text, and the first piece of it that is in no element.
    static constexpr std::array<std::string_view, 4> kFirst = {"text()[1]", "(text())[1]", "./text()[1]",
                                                               "(./text())[1]"};
    const std::string path((*input_.literals)[expression.path].text);
    const bool first = std::ranges::find(kFirst, path) != kFirst.end();
    if (!first && path != ".") unsupported("the path " + path + " of XML", expression.range);
    std::string name = foldName((*input_.literals)[expression.type].text);
    constexpr std::string_view kMax = "(max)";
    if (name.ends_with(kMax)) name.replace(name.size() - kMax.size(), kMax.size(), "(-1)");
    const std::optional<SqlType> type = SqlType::fromDeclaration(name);
    if (!type) unsupported("the type " + name + " for XML", expression.range);
    BoundPtr xml = this->expression(*expression.operand, scope);
    return castExplicitly(boundCall("t_xml_text", wholeText(), std::move(xml), boundInteger(first ? 1 : 0)), *type,
                          nullptr, false);
}

}  // namespace basalt::embedded
