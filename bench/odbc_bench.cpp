// Opening a large result through the ODBC engine, against other ways to read through the same driver.
#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "ado/query.h"
#include "bench/odbc_readers.h"
#include "bench/odbc_sample.h"
#include "bench/program.h"
#include "bench/qt_reader.h"
#include "bench/ratios.h"
#include "engines/odbc/odbc_session.h"

namespace basalt::bench {
namespace {

std::size_t openGoods(TADOConnection& connection) {
    TADOQuery query(connection, "Goods_QUR");
    query.SQL = kOdbcStatement;
    query.Open();
    return static_cast<std::size_t>(query.RecordCount());
}

// A reader whose driver or plugin is not installed is left out, and its ratio said not to have run.
template <typename Reader, typename... Arguments>
std::unique_ptr<Reader> tryReader(const char* name, const Arguments&... arguments) {
    try {
        auto reader = std::make_unique<Reader>(arguments...);
        static_cast<void>(reader->readAll("select * from Goods where Code < 10"));
        return reader;
    } catch (const std::exception& problem) {
        std::printf("%s cannot be compared: %s\n", name, problem.what());
        return nullptr;
    }
}

void add(const char* name, std::size_t rows, const std::function<std::size_t()>& read) {
    benchmark::RegisterBenchmark(name,
                                 [read, rows](benchmark::State& state) {
                                     for (auto _ : state) {
                                         if (read() != rows) state.SkipWithError("rows are missing");
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
}

bool run(int count, char** arguments) {
    const int rows = takeRows(count, arguments);
    // The driver has narrow calls only, and the driver manager converts by the locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    const OdbcSample sample(rows);
    const auto session = odbc::OdbcSession::open(sample.connectionString());
    TADOConnection connection(*session);
    PlainOdbcReader plain(sample.connectionString());
    const auto qt = tryReader<QtReader>("QtSql", "QODBC", sample.connectionString());
    const auto soci = tryReader<SociOdbcReader>("SOCI", sample.connectionString());

    const auto expected = static_cast<std::size_t>(rows);
    add("open/data_set", expected, [&] { return openGoods(connection); });
    add("open/plain", expected, [&] { return plain.readAll(kOdbcStatement); });
    if (qt) add("open/qt_sql", expected, [&] { return qt->readAll(kOdbcStatement); });
    if (soci) add("open/soci", expected, [&] { return soci->readAll(kOdbcStatement); });
    const SmallestTimes times = runRegistered(count, arguments, 5);
    return report(
        {{"open: data set / plain loop with bound columns", quotient(times.of("open/data_set"), times.of("open/plain")),
          1.25},
         {"open: data set / QtSql's QODBC", quotient(times.of("open/data_set"), times.of("open/qt_sql")), 1.0},
         {"open: data set / SOCI's ODBC", quotient(times.of("open/data_set"), times.of("open/soci")), 1.0}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
