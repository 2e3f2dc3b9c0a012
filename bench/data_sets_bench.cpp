// Point queries and large results through the data sets, against other ways to read the same file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "ado/query.h"
#include "bench/peak_memory.h"
#include "bench/program.h"
#include "bench/readers.h"
#include "bench/sample_database.h"
#include "bench/value_bytes.h"
#include "engines/embedded/embedded_session.h"

namespace basalt::bench {
namespace {

class Readers {
public:
    explicit Readers(const std::string& file)
        : session(embedded::EmbeddedSession::open(file)),
          connection(*session),
          plain(file),
          qt("QSQLITE", file, "QSQLITE_OPEN_READONLY"),
          soci(file) {}

    std::unique_ptr<embedded::EmbeddedSession> session;
    TADOConnection connection;
    PlainReader plain;
    QtReader qt;
    SociReader soci;
};

std::size_t pointQuery(TADOQuery& query, int code) {
    query.Close();
    query.SQL = levelStatement(code);
    query.Open();
    return static_cast<std::size_t>(query.FieldByName("Code").AsInteger()) +
           query.FieldByName("Name").AsString().size() + query.FieldByName("Comment").AsString().size();
}

std::size_t openGoods(TADOConnection& connection) {
    TADOQuery query(connection, "Goods_QUR");
    query.SQL = kGoodsStatement;
    query.Open();
    return static_cast<std::size_t>(query.RecordCount());
}

double memoryRatio(TADOConnection& connection) {
    TADOQuery query(connection, "Goods_QUR");
    query.SQL = kGoodsStatement;
    const auto peak = peakMemoryOf([&] { query.Open(); });
    if (!peak) return 0;
    const std::size_t values = valueBytes(query.rowSet());
    std::printf("\nvalues %.1f MB, row set %.1f MB, peak %.1f MB\n", static_cast<double>(values) / 1e6,
                static_cast<double>(query.rowSet().memory()) / 1e6, static_cast<double>(*peak) / 1e6);
    return static_cast<double>(*peak) / static_cast<double>(values);
}

void registerBenchmarks(Readers& readers) {
    const auto nextCode = [](int& code) { return code = code % kLevels + 1; };
    const auto query = std::make_shared<TADOQuery>(readers.connection, "Get_QUR");
    benchmark::RegisterBenchmark("point/data_set", [=](benchmark::State& state) {
        int code = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(pointQuery(*query, nextCode(code)));
    });
    benchmark::RegisterBenchmark("point/plain", [&readers, nextCode](benchmark::State& state) {
        int code = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(readers.plain.readOne(levelStatement(nextCode(code))));
    });
    const auto large = [](const char* name, auto read) {
        benchmark::RegisterBenchmark(name,
                                     [read](benchmark::State& state) {
                                         for (auto _ : state)
                                             benchmark::DoNotOptimize(read());
                                     })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    };
    large("open/data_set", [&readers] { return openGoods(readers.connection); });
    large("open/plain", [&readers] { return readers.plain.readAll(kGoodsStatement).size(); });
    large("open/qt_sql", [&readers] { return readers.qt.readAll(kGoodsStatement); });
    large("open/soci", [&readers] { return readers.soci.readAll(kGoodsStatementUndeclared); });
}

bool run(int count, char** arguments) {
    const int rows = takeRows(count, arguments);
    const SampleDatabase database(rows);
    Readers readers(database.file());
    const double memory = memoryRatio(readers.connection);
    registerBenchmarks(readers);
    const SmallestTimes times = runRegistered(count, arguments, 5);
    return report(
        {{"point query: data set / plain SQLite with literals",
          quotient(times.of("point/data_set"), times.of("point/plain")), 1.0},
         {"open: data set / plain step and copy", quotient(times.of("open/data_set"), times.of("open/plain")), 1.3},
         {"open: data set / QtSql", quotient(times.of("open/data_set"), times.of("open/qt_sql")), 1.0},
         {"open: data set / SOCI", quotient(times.of("open/data_set"), times.of("open/soci")), 1.0},
         {"open: peak memory / bytes of the values", memory, 1.5}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
