#include "engines/odbc/column_types.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "ado/names.h"

namespace basalt::odbc {

namespace {

// Types of SQL Server that ODBC's own headers do not name.
constexpr SQLSMALLINT kServerTime = -154;
constexpr SQLSMALLINT kServerVariant = -150;

struct CatalogName {
    std::string_view name;
    FieldType type;
    int bytesPerCharacter;  // 0 when the length is not a length
};

// Whatever is not listed (uniqueidentifier, xml, sql_variant, time, ...) is read as text.
constexpr std::array kCatalogNames = {
    CatalogName{"bit", FieldType::Boolean, 0},
    CatalogName{"tinyint", FieldType::TinyInt, 0},
    CatalogName{"smallint", FieldType::SmallInt, 0},
    CatalogName{"int", FieldType::Integer, 0},
    CatalogName{"bigint", FieldType::BigInt, 0},
    CatalogName{"float", FieldType::Float, 0},
    CatalogName{"real", FieldType::Float, 0},
    CatalogName{"decimal", FieldType::Decimal, 0},
    CatalogName{"numeric", FieldType::Decimal, 0},
    CatalogName{"money", FieldType::Decimal, 0},
    CatalogName{"smallmoney", FieldType::Decimal, 0},
    CatalogName{"char", FieldType::Text, 1},
    CatalogName{"varchar", FieldType::Text, 1},
    CatalogName{"nchar", FieldType::Text, 2},
    CatalogName{"nvarchar", FieldType::Text, 2},
    CatalogName{"binary", FieldType::Binary, 1},
    CatalogName{"varbinary", FieldType::Binary, 1},
    CatalogName{"image", FieldType::Binary, 0},
    CatalogName{"timestamp", FieldType::Binary, 1},
    CatalogName{"date", FieldType::Date, 0},
    CatalogName{"datetime", FieldType::DateTime, 0},
    CatalogName{"datetime2", FieldType::DateTime, 0},
    CatalogName{"smalldatetime", FieldType::DateTime, 0},
};

int boundOf(SQLULEN size) {
    return size > kLongestBounded ? 0 : static_cast<int>(size);
}

FieldType fieldTypeOf(SQLSMALLINT sqlType) {
    switch (sqlType) {
        case SQL_BIT:
            return FieldType::Boolean;
        case SQL_TINYINT:
            return FieldType::TinyInt;
        case SQL_SMALLINT:
            return FieldType::SmallInt;
        case SQL_INTEGER:
            return FieldType::Integer;
        case SQL_BIGINT:
            return FieldType::BigInt;
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return FieldType::Float;
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            return FieldType::Decimal;
        case SQL_BINARY:
        case SQL_VARBINARY:
        case SQL_LONGVARBINARY:
            return FieldType::Binary;
        case SQL_TYPE_DATE:
        case SQL_DATE:
            return FieldType::Date;
        case SQL_TYPE_TIMESTAMP:
        case SQL_TIMESTAMP:
            return FieldType::DateTime;
        default:
            return FieldType::Text;
    }
}

}  // namespace

void describeFromOdbc(ColumnInfo& column, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits) {
    constexpr int kGuidLength = 36;
    constexpr int kTimeLength = 16;
    column.type = fieldTypeOf(sqlType);
    switch (sqlType) {
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            column.precision = static_cast<int>(std::min<SQLULEN>(size, kMaxDecimalDigits));
            column.scale = digits;
            break;
        case SQL_CHAR:
        case SQL_WCHAR:
            column.fixedLength = true;
            column.size = boundOf(size);
            break;
        case SQL_VARCHAR:
        case SQL_WVARCHAR:
        case SQL_BINARY:
        case SQL_VARBINARY:
        case kServerVariant:
            column.size = boundOf(size);
            break;
        case SQL_GUID:
            column.size = kGuidLength;
            break;
        case SQL_TYPE_TIME:
        case SQL_TIME:
        case kServerTime:
            column.size = kTimeLength;
            break;
        default:
            break;  // numbers and dates have no length, and long values no bound
    }
}

void describeFromCatalog(ColumnInfo& column, const CatalogType& type) {
    column.typeName = type.name;
    const auto known = std::find_if(kCatalogNames.begin(), kCatalogNames.end(),
                                    [&](const CatalogName& each) { return sameName(each.name, type.name); });
    column.type = known == kCatalogNames.end() ? FieldType::Text : known->type;
    if (column.type == FieldType::Decimal) {
        column.precision = type.precision;
        column.scale = type.scale;
    }
    if (known != kCatalogNames.end() && known->bytesPerCharacter > 0 && type.maxLength > 0) {
        column.size = type.maxLength / known->bytesPerCharacter;
    }
    column.fixedLength = sameName(type.name, "char") || sameName(type.name, "nchar");
}

std::string declaredType(const ColumnInfo& column) {
    if (sameName(column.typeName, "decimal") || sameName(column.typeName, "numeric")) {
        return column.typeName + "(" + std::to_string(column.precision) + ", " + std::to_string(column.scale) + ")";
    }
    const auto known = std::find_if(kCatalogNames.begin(), kCatalogNames.end(),
                                    [&](const CatalogName& each) { return sameName(each.name, column.typeName); });
    if (known == kCatalogNames.end() || known->bytesPerCharacter == 0 || sameName(column.typeName, "timestamp")) {
        return column.typeName;
    }
    return column.typeName + (column.size == 0 ? "(max)" : "(" + std::to_string(column.size) + ")");
}

}  // namespace basalt::odbc
