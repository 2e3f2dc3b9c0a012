// Statements and procedure calls on the embedded engine against the plain SQLite C API, on the same file.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

#include "bench/program.h"
#include "engines/embedded/embedded_session.h"

namespace basalt::bench {
namespace {

constexpr int kGoods = 10'000;

// What documents ask for at every line: a level, a good with its unit and store, the prices of a good.
std::string levelStatement(int code) {
    return "SELECT * FROM CostLevel Where Code = " + std::to_string(code % 10 + 1) + " AND CostType = 1";
}

std::string goodStatement(int code) {
    return "select G.Code,G.Name,(Select Name from Units where code=G.Unit) as Unit1,(Select Name from Units where "
           "code=G.Unit2) as Unit2, S.Name as Store from Goodinf as G left join Stores as S on S.Code=G.StoreCode "
           "where "
           "G.Code=" +
           std::to_string(code % kGoods + 1);
}

std::string priceStatement(int code) {
    return "select CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Sell_3 from GoodCostDiscount Where GoodCode = " +
           std::to_string(code % kGoods + 1) + " and CostLevel_Sell_1 is not null";
}

class Folder {
public:
    Folder()
        : path_(std::filesystem::temp_directory_path() / ("basalt_bench_" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    [[nodiscard]] std::string file() const { return (path_ / "bench.basalt").string(); }

private:
    std::filesystem::path path_;
};

void fill(Session& session) {
    session.begin();
    session.run(
        "create table CostLevel (Code int not null, CostType int not null, Name nvarchar(50) not null, Comment "
        "nvarchar(200) null, primary key (CostType, Code));"
        "create table Units (Code int not null primary key, Name nvarchar(50) not null);"
        "create table Stores (Code int not null primary key, Name nvarchar(50) not null);"
        "create table GoodInf (Code int not null primary key, Name nvarchar(100) not null, Unit int null, Unit2 int "
        "null, StoreCode int null, Stock int not null);"
        "create table GoodCostDiscount (GoodCode int not null primary key, CostLevel_Sell_1 decimal(23,9) null, "
        "CostLevel_Sell_2 decimal(23,9) null, CostLevel_Sell_3 decimal(23,9) null);"
        "create table Moves (ID int identity(1,1) not null primary key, GoodCode int not null, Amount int not null, "
        "StockBefore int not null)");
    session.run(
        "create procedure TakeFromStock @GoodCode int, @Amount int as "
        "declare @Stock int; "
        "select @Stock = Stock from GoodInf where Code = @GoodCode; "
        "insert into Moves (GoodCode, Amount, StockBefore) values (@GoodCode, @Amount, @Stock); "
        "update GoodInf set Stock = Stock - @Amount where Code = @GoodCode");
    for (int code = 1; code <= 10; ++code) {
        const std::string n = std::to_string(code);
        session.run("insert into CostLevel values (" + n + ", 1, N'سطح " + n + "', N'فروش به همکاران')");
        session.run("insert into Units values (" + n + ", N'واحد " + n + "')");
        session.run("insert into Stores values (" + n + ", N'انبار " + n + "')");
    }
    for (int code = 1; code <= kGoods; ++code) {
        const std::string n = std::to_string(code);
        session.run("insert into GoodInf values (" + n + ", N'کالای " + n + "', " + std::to_string(code % 10 + 1) +
                    ", 2, 3, 1000)");
        session.run("insert into GoodCostDiscount values (" + n + ", " + n + "500.25, " + n + "000, null)");
    }
    session.commit();
}

void check(int code, sqlite3* database) {
    if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW)
        throw std::runtime_error(sqlite3_errmsg(database));
}

// The file as SQLite alone reads and writes it.
class Plain {
public:
    explicit Plain(const std::string& file) {
        check(sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr), database_);
        execute("PRAGMA foreign_keys = ON");
        execute("PRAGMA synchronous = FULL");
    }
    ~Plain() {
        for (sqlite3_stmt* statement : {lookUp_, insert_, update_})
            sqlite3_finalize(statement);
        sqlite3_close(database_);
    }
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;

    void execute(const char* text) { check(sqlite3_exec(database_, text, nullptr, nullptr, nullptr), database_); }

    // Prepares the text with its literals, reads every value of its row, and forgets it.
    std::size_t read(const std::string& text) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(database_, text.c_str(), static_cast<int>(text.size()), &statement, nullptr),
              database_);
        std::size_t bytes = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                if (sqlite3_column_text(statement, i) != nullptr)
                    bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
            }
        }
        sqlite3_finalize(statement);
        return bytes;
    }

    void takeFromStock(int good, int amount) {
        if (lookUp_ == nullptr) {
            lookUp_ = prepare("SELECT Stock FROM GoodInf WHERE Code = ?");
            insert_ = prepare("INSERT INTO Moves (ID, GoodCode, Amount, StockBefore) VALUES (?, ?, ?, ?)");
            update_ = prepare("UPDATE GoodInf SET Stock = Stock - ? WHERE Code = ?");
        }
        sqlite3_bind_int(lookUp_, 1, good);
        check(sqlite3_step(lookUp_), database_);
        const int stock = sqlite3_column_int(lookUp_, 0);
        check(sqlite3_reset(lookUp_), database_);
        sqlite3_bind_int(insert_, 1, ++move_);
        sqlite3_bind_int(insert_, 2, good);
        sqlite3_bind_int(insert_, 3, amount);
        sqlite3_bind_int(insert_, 4, stock);
        finish(insert_);
        sqlite3_bind_int(update_, 1, amount);
        sqlite3_bind_int(update_, 2, good);
        finish(update_);
    }

private:
    sqlite3_stmt* prepare(const char* text) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v3(database_, text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr), database_);
        return statement;
    }
    void finish(sqlite3_stmt* statement) {
        check(sqlite3_step(statement), database_);
        check(sqlite3_reset(statement), database_);
    }

    sqlite3* database_ = nullptr;
    int move_ = 0;
    sqlite3_stmt* lookUp_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    sqlite3_stmt* update_ = nullptr;
};

using Statement = std::string (*)(int);
constexpr std::pair<const char*, Statement> kStatements[] = {
    {"level", levelStatement}, {"good", goodStatement}, {"price", priceStatement}};

// Both calls run inside one transaction that is given up, so that what is measured is the engine and not the disk.
void registerCalls(Session& session, Plain& plain) {
    benchmark::RegisterBenchmark("call/procedure", [&session](benchmark::State& state) {
        session.begin();
        int good = 0;
        const std::int64_t one = 1;
        for (auto _ : state) {
            const Argument arguments[] = {{"@GoodCode", Value{std::int64_t{good++ % kGoods + 1}}},
                                          {"@Amount", Value{one}}};
            benchmark::DoNotOptimize(session.call("TakeFromStock", arguments));
        }
        session.rollback();
    });
    benchmark::RegisterBenchmark("call/plain", [&plain](benchmark::State& state) {
        plain.execute("BEGIN IMMEDIATE");
        int good = 0;
        for (auto _ : state)
            plain.takeFromStock(good++ % kGoods + 1, 1);
        plain.execute("ROLLBACK");
    });
}

void registerStatements(embedded::EmbeddedSession& session, Plain& plain) {
    for (const auto& [name, statement] : kStatements) {
        const std::string end = std::string("/") + name;
        // As it stands each statement locks the file for itself, which costs both sides the same.
        benchmark::RegisterBenchmark(("session" + end).c_str(),
                                     [&session, statement = statement](benchmark::State& state) {
                                         int code = 0;
                                         for (auto _ : state)
                                             benchmark::DoNotOptimize(session.run(statement(code++)));
                                     });
        benchmark::RegisterBenchmark(("plain" + end).c_str(), [&plain, statement = statement](benchmark::State& state) {
            int code = 0;
            for (auto _ : state)
                benchmark::DoNotOptimize(plain.read(statement(code++)));
        });
        // In one transaction, as a document is saved, what is left is the statements.
        benchmark::RegisterBenchmark(("session_in_transaction" + end).c_str(),
                                     [&session, statement = statement](benchmark::State& state) {
                                         session.begin();
                                         int code = 0;
                                         for (auto _ : state)
                                             benchmark::DoNotOptimize(session.run(statement(code++)));
                                         session.rollback();
                                     });
        benchmark::RegisterBenchmark(("plain_in_transaction" + end).c_str(),
                                     [&plain, statement = statement](benchmark::State& state) {
                                         plain.execute("BEGIN IMMEDIATE");
                                         int code = 0;
                                         for (auto _ : state)
                                             benchmark::DoNotOptimize(plain.read(statement(code++)));
                                         plain.execute("ROLLBACK");
                                     });
    }
}

double sum(const SmallestTimes& times, const std::string& side) {
    double total = 0;
    for (const auto& [name, statement] : kStatements)
        total += times.of(side + "/" + name);
    return total;
}

// 10,000 texts that differ in their literals share as many plans as there are forms of them.
void showPlanReuse(embedded::EmbeddedSession& session) {
    const auto before = session.planStatistics();
    for (int code = 0; code < 10'000; ++code)
        session.run(kStatements[code % 3].second(code));
    const auto after = session.planStatistics();
    std::printf("\n10,000 statements of 3 forms: %llu planned, %llu from kept plans\n",
                static_cast<unsigned long long>(after.misses - before.misses),
                static_cast<unsigned long long>(after.hits - before.hits));
}

bool run(int count, char** arguments) {
    const Folder folder;
    const auto session = embedded::EmbeddedSession::open(folder.file(), {.createIfMissing = true});
    fill(*session);
    showPlanReuse(*session);
    Plain plain(folder.file());
    registerCalls(*session, plain);
    registerStatements(*session, plain);
    const SmallestTimes times = runRegistered(count, arguments, 5);
    return report({{"procedure of a look-up, an insert and an update / plain, cached",
                    quotient(times.of("call/procedure"), times.of("call/plain")), 2.0},
                   {"point statements / each prepared anew by plain SQLite",
                    quotient(sum(times, "session"), sum(times, "plain")), 1.0},
                   {"the same in one transaction",
                    quotient(sum(times, "session_in_transaction"), sum(times, "plain_in_transaction")), 0.2}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
