#include "engines/embedded/executor/definition/column_users.h"

#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/executor/definition/stored_index.h"

namespace basalt::embedded {

namespace {

bool holds(const std::vector<std::string>& names, std::string_view column) {
    return std::ranges::any_of(names, [&](const std::string& name) { return sameName(name, column); });
}

bool hasVariableLength(const SqlType& type) {
    return type.kind == TypeKind::VarChar || type.kind == TypeKind::NVarChar || type.kind == TypeKind::VarBinary;
}

bool sameType(const SqlType& before, const SqlType& after) {
    return before.kind == after.kind && before.length == after.length && before.precision == after.precision &&
           before.scale == after.scale;
}

bool isUnchangedOrLonger(const SqlType& before, const SqlType& after) {
    if (sameType(before, after)) return true;
    return hasVariableLength(before) && before.kind == after.kind && before.length != kMaxLength &&
           (after.length == kMaxLength || after.length > before.length);
}

}  // namespace

void ColumnUsers::each(std::string_view column, const Visit& visit) const {
    for (const StoredIndex& index : indexesOf(table_, database_)) {
        const std::string shown = shownIndexName(table_.name, index.name);
        if (reads(index.condition, true, column)) {
            visit(Kind::IndexCondition, shown);
        } else if (holds(index.included, column)) {
            visit(Kind::IndexIncluded, shown);
        } else if (holds(index.columns, column)) {
            visit(Kind::IndexKey, shown);
        }
    }
    for (const DesignKey& key : design_.keys) {
        if (std::ranges::any_of(key.columns, [&](const auto& each) { return sameName(each.name, column); }))
            visit(key.primary ? Kind::PrimaryKey : Kind::Unique, key.name);
    }
    for (const DesignForeignKey& key : design_.foreignKeys) {
        if (holds(key.columns, column)) visit(Kind::ForeignKey, key.name);
    }
    for (const DesignCheck& check : design_.checks) {
        if (reads(check.text, true, column)) visit(Kind::Check, check.name);
    }
    for (const DesignColumn& other : design_.columns) {
        if (sameName(other.name, column) && !other.defaultName.empty()) visit(Kind::Default, other.defaultName);
        if (reads(other.computedText, false, column)) visit(Kind::Computed, other.name);
    }
}

void ColumnUsers::eachReference(std::string_view column, const Visit& visit) const {
    if (table_.temporary) return;
    for (const std::string& name : catalog_.tableNames()) {
        const Table* other = catalog_.table(name);
        if (other == nullptr) continue;
        for (const ForeignKey& key : other->foreignKeys) {
            const bool own = sameName(other->name, table_.name) && holds(key.columns, column);
            if (!own && sameName(key.referencedTable, table_.name) && holds(key.referenced, column))
                visit(Kind::ForeignKey, key.name);
        }
    }
}

bool ColumnUsers::reads(const std::string& text, bool condition, std::string_view column) const {
    return !text.empty() && readsColumn(catalog_, table_, text, condition, column);
}

namespace {

std::string sentence(std::string_view kind, std::string_view user, std::string_view column) {
    std::string result = "The ";
    result.append(kind).append(" '").append(user).append("' is dependent on column '").append(column);
    return result + "'.\n";
}

}  // namespace

std::string ColumnUsers::of(std::string_view column) const {
    std::string result;
    each(column, [&](Kind kind, std::string_view user) { result += sentence(wordFor(kind), user, column); });
    return result;
}

std::string ColumnUsers::ofAlteration(const DesignColumn& before, const DesignColumn& after) const {
    std::string result;
    const bool longer = isUnchangedOrLonger(before.type, after.type);
    const bool losesNull = before.nullable && !after.nullable;
    const auto bears = [&](Kind kind) {
        switch (kind) {
            case Kind::IndexKey:
                return longer && !losesNull && (after.type.length != kMaxLength || sameType(before.type, after.type));
            case Kind::IndexIncluded:
                return longer && !losesNull;
            case Kind::Unique:
                return longer && !losesNull && hasVariableLength(after.type) && after.type.length != kMaxLength;
            case Kind::Check:
                return hasVariableLength(after.type) && before.type.kind == after.type.kind;
            case Kind::Default:
                return before.type.kind == after.type.kind;
            case Kind::IndexCondition:
            case Kind::PrimaryKey:
            case Kind::ForeignKey:
            case Kind::Computed:
                return false;
        }
        return false;
    };
    const Visit add = [&](Kind kind, std::string_view user) {
        if (!bears(kind)) result += sentence(wordFor(kind), user, before.name);
    };
    each(before.name, add);
    eachReference(before.name, add);
    return result;
}

const char* ColumnUsers::wordFor(Kind kind) {
    switch (kind) {
        case Kind::IndexKey:
        case Kind::IndexIncluded:
        case Kind::IndexCondition:
            return "index";
        case Kind::Computed:
            return "column";
        default:
            return "object";
    }
}

}  // namespace basalt::embedded
