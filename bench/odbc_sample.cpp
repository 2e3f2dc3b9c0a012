#include "bench/odbc_sample.h"

#include <sqlite3.h>

#include <random>
#include <stdexcept>

#include "tests/odbc/drivers.h"

namespace basalt::bench {

namespace {

void execute(sqlite3* database, const std::string& sql) {
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
}

}  // namespace

OdbcSample::OdbcSample(int goods)
    : folder_(std::filesystem::temp_directory_path() / ("basalt_bench_" + std::to_string(std::random_device()()))) {
    const auto driver = odbc::test::driverPart("libsqlite3odbc.so");
    if (!driver) throw std::runtime_error("SQLite's ODBC driver (libsqlite3odbc.so) is not installed");
    std::filesystem::create_directory(folder_);
    const std::string file = (folder_ / "bench.db").string();
    connectionString_ = *driver + "Database=" + file;
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    execute(database, "pragma synchronous = off");
    execute(
        database,
        "create table Goods (Code int not null, Active bit not null, Kind tinyint not null, UnitCode smallint not "
        "null, Barcode bigint not null, Weight float not null, Price varchar(30) not null, Cost varchar(30), Name "
        "nvarchar(100) not null, AbbName nvarchar(50), Place varchar(20), Comment nvarchar(200), Made date not null, "
        "Changed datetime not null, CategoryCode int, Stock float not null)");
    execute(
        database,
        "with recursive N(n) as (select 1 union all select n + 1 from N where n < " + std::to_string(goods) +
            ") insert into Goods select n, n % 2, n % 200, n % 30000, 6260000000000 + n, n % 1000 + 0.5, n || "
            "'500.123456789', case when n % 3 then n || '.25' end, 'کالای شماره ' || n, case when n % 3 then 'ک' || n "
            "end, 'A-' || (n % 97), case when n % 3 = 0 then 'بدون توضیح' end, '2024-0' || (1 + n % 9) || '-15', "
            "'2024-03-20 10:' || (10 + n % 50) || ':00', n % 400, n % 5000 + 0.125 from N");
    sqlite3_close(database);
}

OdbcSample::~OdbcSample() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace basalt::bench
