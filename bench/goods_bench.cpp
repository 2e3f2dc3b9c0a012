// Scans and stock checks on a large company: 100,000 goods, 50 barcode layouts, a ledger of 1,000,000 rows.
//
// What a stock check costs goes by the movements of the document's goods behind its date: the ledger has a hundred of
// each good, ten on each of ten dates, in documents of two hundred lines whose numbers begin again with each date.
// Goods that move more often are in a second store, a thousand movements each: what a check of them takes is shown
// without a limit.
#include <benchmark/benchmark.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "bench/program.h"
#include "bench/signed_in_host.h"
#include "engines/embedded/embedded_session.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/goodsinfo_unt.h"
#include "host/services/deploy.h"

namespace basalt::bench {
namespace {

constexpr int kFirstGood = 100'000;
constexpr int kGoods = 100'000;
constexpr int kFirstLayout = 30;
constexpr int kLayouts = 45;  // beside the five of the demo company
constexpr int kLedgerRows = 1'000'000;
constexpr int kLedgerGoods = 10'000;
constexpr int kDenseRows = 200'000;
constexpr int kDates = 10;
constexpr int kOwnNumber = 5000;
constexpr int kLines = 200;
constexpr double kLookUpLimit = 5e6;  // nanoseconds
constexpr double kCheckLimit = 50e6;
constexpr double kScanLimit = 1e9 / 2000;

const char* const kDigits = "(VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9))";

// A number from 0 to 10^count - 1 a row, as No.
std::string numbers(int count) {
    std::string value;
    std::string from;
    for (int i = 0, factor = 1; i < count; ++i, factor *= 10) {
        const std::string name = "D" + std::to_string(i);
        value += (i == 0 ? "" : " + ") + name + ".N * " + std::to_string(factor);
        from += (i == 0 ? "" : " CROSS JOIN ") + std::string(kDigits) + " AS " + name + "(N)";
    }
    return "(SELECT " + value + " AS No FROM " + from + ") AS X";
}

void fill(Session& session) {
    host::deployDatabase(session, {.demo = true});
    session.begin();
    const std::string first = std::to_string(kFirstGood);
    session.run(
        "INSERT INTO dbo.GoodInf (Code, Name, AbbName, Unit) SELECT X.No + " + first +
        ", N'کالای ' + CAST(X.No AS nvarchar(10)), N'!626' + RIGHT(N'000000000' + CAST(X.No AS nvarchar(10)), 10) "
        "+ N'!' + RIGHT(N'00000' + CAST(X.No AS nvarchar(10)), 5) + N'!', 1 FROM " +
        numbers(5));
    session.run("INSERT INTO dbo.GoodCostDiscount (GoodCode, CostLevel_Sell_1) SELECT X.No + " + first +
                ", 1000 + X.No FROM " + numbers(5));
    for (int i = 0; i < kLayouts; ++i) {
        session.run(
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide) "
            "VALUES (N'الگو', 13, 1, 2, N'" +
            std::to_string(kFirstLayout + i) + "', 1, 2, 3, 5, 8, 5, 1000)");
    }
    // They come in and go out by turns, and more goes out in a year than is there at its beginning.
    const auto move = [&session](int rows, int goods, int store, int firstNumber) {
        const std::string good = "X.No % " + std::to_string(goods);
        const std::string round = "X.No / " + std::to_string(goods);
        const std::string onADate = std::to_string(rows / goods / kDates);
        session.run("INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar) SELECT " +
                    std::to_string(kFirstGood) + " + " + good + ", " + std::to_string(store) +
                    ", N'1405/' + RIGHT(N'0' + CAST(1 + " + round + " / " + onADate +
                    " AS nvarchar(2)), 2) + N'/15', " + std::to_string(firstNumber) + " + (" + round + " % " + onADate +
                    ") * " + std::to_string(goods / kLines) + " + " + good + " / " + std::to_string(kLines) +
                    ", CASE (" + round + ") % 2 WHEN 0 THEN 40 ELSE -20 END, 40 * ((" + round + ") / 2 + 1) - 20 * ((" +
                    round + " + 1) / 2) FROM " + numbers(6) + " WHERE X.No < " + std::to_string(rows));
    };
    move(kLedgerRows, kLedgerGoods, 1, 1);
    move(kDenseRows, kLines, 2, kOwnNumber + 1);
    // A document whose number no other one has, for a ledger that numbers over all dates.
    session.run("INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar) SELECT " + first +
                " + X.No, 1, N'1405/10/15', " + std::to_string(kOwnNumber) + ", 40, 1040 FROM " + numbers(3) +
                " WHERE X.No < " + std::to_string(kLines));
    session.run("CREATE TABLE dbo.BenchLines (Code int NOT NULL, Anbar int NOT NULL, Mogodi decimal(23, 9) NOT NULL)");
    session.run("INSERT INTO dbo.BenchLines (Code, Anbar, Mogodi) SELECT TOP " + std::to_string(kLines) + " " + first +
                " + X.No * 37, 1, -5 FROM " + numbers(3) + " ORDER BY X.No");
    session.commit();
}

std::string fiveDigits(int number) {
    const std::string text = std::to_string(number);
    return std::string(5 - text.size(), '0') + text;
}

std::string barcodeOf(int number) {
    return std::to_string(kFirstLayout + number % kLayouts) + fiveDigits(number % kGoods * 7919 % kGoods) + "012505";
}

std::string layoutStatement(const std::string& barcode) {
    return "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('" + barcode +
           "' , ConstantStart, ConstantCount) = ConstantCode  ";
}

std::string lookUpStatement(const std::string& barcode) {
    return "SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!" + barcode.substr(2, 5) + "!%' ORDER BY Code DESC";
}

std::size_t rowsOf(Session& session, const std::string& statement) {
    const BatchResult result = session.run(statement);
    if (result.results.empty() || !result.results[0].rows || result.results[0].rows->rowCount() == 0)
        throw std::runtime_error("no rows: " + statement);
    return result.results[0].rows->rowCount();
}

std::int64_t statementsOfAScan(Session& session, const std::string& barcode) {
    const BatchResult layouts = session.run(layoutStatement(barcode));
    const BatchResult goods = session.run(lookUpStatement(barcode));
    const std::int64_t good = toInt64(goods.results.at(0).rows->column(0).valueAt(0));
    const BatchResult price = session.run("{call GetDefaultCostLevel(7," + std::to_string(good) + ",0)}");
    return good + static_cast<std::int64_t>(layouts.results.size() + price.results.size());
}

void scan(const std::string& barcode) {
    TBarCodeFormulType kind = bftNone;
    if (!FillGoodInfFromBarcode(butNew, kind, barcode, "7", "", 0) || kind != bftAmount)
        throw std::runtime_error("the barcode " + barcode + " was not understood");
}

bool run(int count, char** arguments) {
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    fill(*session);
    SignedInHost host(*session);
    host->setSetting("NegativeType", "0");

    int next = 0;
    benchmark::RegisterBenchmark("scan/module", [&](benchmark::State& state) {
        for (auto _ : state)
            scan(barcodeOf(next++));
    });
    benchmark::RegisterBenchmark("scan/statements", [&](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(statementsOfAScan(*session, barcodeOf(next++)));
    });
    benchmark::RegisterBenchmark("scan/look-up alone", [&](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(rowsOf(*session, lookUpStatement(barcodeOf(next++))));
    });
    const std::string lines = "SELECT Code, Anbar, Mogodi FROM dbo.BenchLines";
    // On the last day of the ledger, as most documents are, and on a day with nine tenths of the movements behind it.
    for (const auto& [name, day] : {std::pair<std::string, std::string>{"", "1405/10/16"}, {", early", "1405/01/16"}}) {
        benchmark::RegisterBenchmark(("stock/by procedure" + name).c_str(), [&lines, day](benchmark::State& state) {
            for (auto _ : state) {
                if (!Check_TockMinus(lines, day, 0, false)) throw std::runtime_error("there is not enough");
            }
        })->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("stock/by ledger" + name).c_str(), [&lines, day](benchmark::State& state) {
            for (auto _ : state) {
                if (!Check_TockMinus(lines, day, "1405/10/17", 2000)) throw std::runtime_error("there is not enough");
            }
        })->Unit(benchmark::kMillisecond);
    }
    // Its own lines, somewhat less of each good: the first document of an early date and of the last one, among those
    // that have its number on other dates; and one that moves to the next day of a ledger that numbers over all dates.
    const auto edited = [&](const char* name, const char* day, int number, const char* numbering) {
        benchmark::RegisterBenchmark(
            (std::string("stock/by procedure, edited") + name).c_str(),
            [&session, day, number, numbering](benchmark::State& state) {
                const std::string own =
                    "SELECT Code, 1 AS Anbar, 35 AS Mogodi FROM GoodInf WHERE Code >= " + std::to_string(kFirstGood) +
                    " AND Code < " + std::to_string(kFirstGood + kLines);
                session->run(std::string("UPDATE dbo.HostSettings SET Value = N'") + numbering +
                             "' WHERE Name = N'LedgerNumbering'");
                for (auto _ : state) {
                    if (!Check_TockMinus(own, day, number, false)) throw std::runtime_error("there is not enough");
                }
            })
            ->Unit(benchmark::kMillisecond);
    };
    edited("", "1405/10/15", 1, "date");
    edited(", early", "1405/01/15", 1, "date");
    edited(", moved", "1405/10/16", kOwnNumber, "all");
    const std::string denseLines =
        "SELECT Code, 2 AS Anbar, -5 AS Mogodi FROM GoodInf WHERE Code >= " + std::to_string(kFirstGood) +
        " AND Code < " + std::to_string(kFirstGood + kLines);
    for (const auto& [name, day] : {std::pair<std::string, std::string>{"", "1405/10/16"}, {", early", "1405/01/16"}}) {
        benchmark::RegisterBenchmark(("stock/by procedure, dense" + name).c_str(), [&denseLines,
                                                                                    day](benchmark::State& state) {
            for (auto _ : state) {
                if (!Check_TockMinus(denseLines, day, 0, false)) throw std::runtime_error("there is not enough");
            }
        })->Unit(benchmark::kMillisecond);
    }
    // What finding goods by their barcodes costs those who change them: shown beside a change without barcodes.
    const auto update = [&](const std::string& assignment) {
        session->run("UPDATE GoodInf SET " + assignment +
                     " WHERE Code = " + std::to_string(kFirstGood + next % kGoods));
    };
    benchmark::RegisterBenchmark("good/new barcode", [&](benchmark::State& state) {
        for (auto _ : state) {
            ++next;
            update("AbbName = N'!627" + std::to_string(1'000'000'000 + next) + "!" + fiveDigits(next % kGoods) + "!'");
        }
    });
    benchmark::RegisterBenchmark("good/new price", [&](benchmark::State& state) {
        for (auto _ : state) {
            ++next;
            update("ConsumerPrice = " + std::to_string(next));
        }
    });
    const SmallestTimes times = runRegistered(count, arguments, 5);
    return report({
        {"scan: module / its statements", quotient(times.of("scan/module"), times.of("scan/statements")), 1.25},
        {"scan: time / one of 2,000 a second", times.elapsed("scan/module") / kScanLimit, 1.0},
        {"look-up by scale code, 100,000 goods / 5 ms", times.elapsed("scan/look-up alone") / kLookUpLimit, 1.0},
        {"stock check by procedure, 200 lines / 50 ms", times.elapsed("stock/by procedure") / kCheckLimit, 1.0},
        {"stock check by ledger, 200 lines / 50 ms", times.elapsed("stock/by ledger") / kCheckLimit, 1.0},
        {"stock check by procedure, early document / 50 ms", times.elapsed("stock/by procedure, early") / kCheckLimit,
         1.0},
        {"stock check by procedure, edited document / 50 ms", times.elapsed("stock/by procedure, edited") / kCheckLimit,
         1.0},
        {"stock check by procedure, early edited document / 50 ms",
         times.elapsed("stock/by procedure, edited, early") / kCheckLimit, 1.0},
        {"stock check by procedure, moved document / 50 ms",
         times.elapsed("stock/by procedure, edited, moved") / kCheckLimit, 1.0},
        {"stock check by ledger, early document / 50 ms", times.elapsed("stock/by ledger, early") / kCheckLimit, 1.0},
    });
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
