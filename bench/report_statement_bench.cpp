// The price report's statement over 100,000 goods through the embedded engine, against the SQLite C API that steps
// through the statement which the engine makes of it and copies every value.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QTemporaryDir>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/program.h"
#include "bench/signed_in_host.h"
#include "costlevel/costlevel_dm.h"
#include "engines/embedded/embedded_session.h"
#include "engines/embedded/generated_sql.h"
#include "engines/embedded/open_database.h"
#include "host/services/deploy.h"

namespace basalt::bench {
namespace {

constexpr int kGoods = 100'000;
constexpr double kLimit = 1.3;

// Every good with all of its twenty prices.
void fill(Session& session) {
    host::deployDatabase(session, {});
    session.begin();
    const std::string goods =
        "WITH N AS (SELECT 1 AS No UNION ALL SELECT No + 1 FROM N WHERE No < " + std::to_string(kGoods) + ") ";
    session.run(
        goods +
        "INSERT INTO GoodInf (Code, Name, AbbName, ConsumerPrice) SELECT No, N'کالای شماره ' + CAST(No AS "
        "nvarchar(10)), N'!62610010' + CAST(No AS nvarchar(10)) + N'!62610020' + CAST(No AS nvarchar(10)), No * "
        "1250 FROM N OPTION (MAXRECURSION 0)");
    std::string columns = "GoodCode";
    std::string prices = "Code";
    for (const char* direction : {"Sell", "Buy"}) {
        for (int level = 1; level <= 10; ++level) {
            columns += std::string(", CostLevel_") + direction + "_" + std::to_string(level);
            prices += ", Code * " + std::to_string(100 + level) + ".25";
        }
    }
    session.run("INSERT INTO GoodCostDiscount (" + columns + ") SELECT " + prices + " FROM GoodInf");
    session.commit();
}

// Values one behind the other, each with its size before it, in blocks that are never moved.
class Copies {
public:
    void add(const void* data, std::size_t size) {
        const std::size_t needed = sizeof(std::uint32_t) + size;
        if (left_ < needed) {
            left_ = std::max(kBlock, needed);
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
            at_ = blocks_.back().get();
        }
        const auto stored = static_cast<std::uint32_t>(size);
        std::memcpy(at_, &stored, sizeof stored);
        if (size > 0) std::memcpy(at_ + sizeof stored, data, size);
        at_ += needed;
        left_ -= needed;
    }

private:
    static constexpr std::size_t kBlock = 1 << 20;

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* at_ = nullptr;
    std::size_t left_ = 0;
};

std::size_t readPlain(sqlite3_stmt* statement) {
    const int count = sqlite3_column_count(statement);
    Copies copies;
    std::size_t rows = 0;
    for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
        for (int i = 0; i < count; ++i) {
            sqlite3_value* value = sqlite3_column_value(statement, i);
            switch (sqlite3_value_type(value)) {
                case SQLITE_INTEGER: {
                    const std::int64_t number = sqlite3_value_int64(value);
                    copies.add(&number, sizeof number);
                    break;
                }
                case SQLITE_NULL:
                    copies.add(nullptr, 0);
                    break;
                case SQLITE_TEXT: {
                    const unsigned char* text = sqlite3_value_text(value);
                    copies.add(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
                    break;
                }
                default: {
                    const void* data = sqlite3_value_blob(value);
                    copies.add(data, static_cast<std::size_t>(sqlite3_value_bytes(value)));
                }
            }
        }
    }
    sqlite3_reset(statement);
    benchmark::DoNotOptimize(copies);
    return rows;
}

bool run(int count, char** arguments) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("bench.basalt")).toStdString();
    const auto session = embedded::EmbeddedSession::open(path, {.createIfMissing = true});
    fill(*session);
    std::string statement;
    {
        const SignedInHost host(*session);
        TCostLevel_DM store;
        store.CostReport_Get();
        statement = store.CostReport_QUR.SQL.Text();
    }
    const std::unique_ptr<embedded::SqliteDatabase> plain = embedded::openDatabase(path, {});
    const std::string sql = embedded::generatedSql(*plain, statement);
    std::printf("%s\n\n", sql.c_str());
    const embedded::SqliteStatement prepared = plain->prepare(sql);

    const auto requireRows = [](std::size_t rows) {
        if (rows != 2 * std::size_t{kGoods})
            throw std::runtime_error("the report has " + std::to_string(rows) + " rows");
    };
    benchmark::RegisterBenchmark("report/engine", [&](benchmark::State& state) {
        for (auto _ : state)
            requireRows(session->run(statement).results.at(0).rows->rowCount());
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("report/sqlite", [&](benchmark::State& state) {
        for (auto _ : state)
            requireRows(readPlain(prepared.handle()));
    })->Unit(benchmark::kMillisecond);
    const SmallestTimes times = runRegistered(count, arguments, 5);
    return report({{"report statement: engine / the SQLite C API with its SQL",
                    quotient(times.of("report/engine"), times.of("report/sqlite")), kLimit}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
