#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

ErrorCategory categoryOf(int number) {
    switch (number) {
        case 102:
        case 103:
        case 104:
        case 105:
        case 107:
        case 109:
        case 110:
        case 111:
        case 116:
        case 120:
        case 121:
        case 130:
        case 137:
        case 147:
        case 156:
        case 174:
        case 189:
        case 195:
        case 205:
        case 209:
        case 213:
        case 240:
        case 264:
        case 319:
        case 447:
        case 448:
        case 468:
        case 1010:
        case 1011:
        case 1013:
        case 1033:
        case 1087:
        case 4104:
        case 4108:
        case 4145:
        case 8120:
        case 8121:
        case 8127:
        case 8155:
        case 8158:
        case 10709:
            return ErrorCategory::Syntax;
        case 201:
        case 207:
        case 208:
        case 2812:
        case 3701:
        case 4902:
        case 1911:
        case 1769:
            return ErrorCategory::NotFound;
        case 515:
        case 547:
        case 2601:
        case 2627:
        case 1505:
        case 544:
        case 8101:
            return ErrorCategory::Constraint;
        case 206:
        case 220:
        case 232:
        case 241:
        case 242:
        case 245:
        case 248:
        case 257:
        case 281:
        case 295:
        case 402:
        case 517:
        case 529:
        case 8114:
        case 8115:
        case 8117:
        case 8134:
        case 8169:
            return ErrorCategory::Conversion;
        case 2628:
        case 8152:
            return ErrorCategory::Truncation;
        case 1204:
        case 1205:
        case 1222:
            return ErrorCategory::Busy;
        case 191:
        case 8621:
        case 8631:
            return ErrorCategory::Limit;
        default:
            return ErrorCategory::Other;
    }
}

const char* sqlStateOf(int number) {
    switch (number) {
        case 207:
            return "42S22";
        case 208:
        case 3701:
        case 4902:
            return "42S02";
        case 2714:
            return "42S01";
        case 241:
        case 242:
            return "22007";
        case 245:
            return "22018";
        case 220:
        case 232:
        case 248:
        case 8115:
            return "22003";
        case 8134:
            return "22012";
        case 2628:
        case 8152:
            return "22001";
        case 1205:
        case 1222:
            return "HYT00";
        default:
            break;
    }
    switch (categoryOf(number)) {
        case ErrorCategory::Constraint:
            return "23000";
        case ErrorCategory::Conversion:
            return "22018";
        case ErrorCategory::Syntax:
        case ErrorCategory::NotFound:
            return "42000";
        default:
            return "HY000";
    }
}

DatabaseError sqlError(int number, const std::string& message, std::string statement) {
    return DatabaseError(categoryOf(number), sqlStateOf(number), number, message, std::move(statement));
}

void throwSqlError(int number, const std::string& message) {
    throw sqlError(number, message);
}

DatabaseError withStatement(const DatabaseError& error, std::string_view statement) {
    if (!error.statement().empty()) return error;
    DatabaseError stated(error.category(), error.sqlState(), error.nativeCode(), error.what(), std::string(statement));
    stated.setResults(error.results());
    return stated;
}

}  // namespace basalt::embedded
