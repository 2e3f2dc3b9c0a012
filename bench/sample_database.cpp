#include "bench/sample_database.h"

#include <random>

#include "engines/embedded/embedded_session.h"

namespace basalt::bench {

namespace {

// In one transaction: what is measured is reading.
void fillLevels(Session& session) {
    session.run(
        "create table CostLevel (Code int not null, CostType int not null, Name nvarchar(50) not null, "
        "Comment nvarchar(200) null, primary key (CostType, Code))");
    for (int code = 1; code <= kLevels; ++code) {
        const std::string number = std::to_string(code);
        session.run("insert into CostLevel (Code, CostType, Name, Comment) values (" + number + ", 1, N'سطح قیمت " +
                    number + "', N'فروش به همکاران')");
    }
}

void fillGoods(Session& session, int goods) {
    session.run(
        "create table Goods (Code int not null primary key, Active bit not null, Kind tinyint not null, "
        "UnitCode smallint not null, Barcode bigint not null, Weight float not null, Price decimal(23,9) not null, "
        "Cost decimal(18,2) null, Name nvarchar(100) not null, AbbName nvarchar(50) null, Place varchar(20) null, "
        "Comment nvarchar(200) null, Made date not null, Changed datetime not null, CategoryCode int null, Stock "
        "decimal(18,3) not null)");
    for (int code = 1; code <= goods; ++code) {
        const std::string n = std::to_string(code);
        const bool sparse = code % 3 == 0;
        session.run("insert into Goods values (" + n + ", " + std::to_string(code % 2) + ", " +
                    std::to_string(code % 200) + ", " + std::to_string(code % 30000) + ", 626000" +
                    std::to_string(1000000 + code) + ", " + std::to_string(code % 1000) + ".5, " + n +
                    "500.123456789, " + (sparse ? "null" : n + ".25") + ", N'کالای شماره " + n + "', " +
                    (sparse ? "null" : "N'ک" + n + "'") + ", 'A-" + std::to_string(code % 97) + "', " +
                    (sparse ? "N'بدون توضیح'" : "null") + ", '2024-0" + std::to_string(1 + code % 9) +
                    "-15', '2024-03-20 10:" + std::to_string(10 + code % 50) + ":00', " + std::to_string(code % 400) +
                    ", " + std::to_string(code % 5000) + ".125)");
    }
}

}  // namespace

std::string levelStatement(int code) {
    return "SELECT * FROM CostLevel Where Code = " + std::to_string(code) + " AND CostType = 1";
}

SampleDatabase::SampleDatabase(int goods)
    : folder_(std::filesystem::temp_directory_path() / ("basalt_bench_" + std::to_string(std::random_device()()))),
      file_((folder_ / "bench.basalt").string()) {
    std::filesystem::create_directory(folder_);
    const auto session = embedded::EmbeddedSession::open(file_, {.createIfMissing = true});
    session->begin();
    fillLevels(*session);
    fillGoods(*session, goods);
    session->commit();
}

SampleDatabase::~SampleDatabase() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace basalt::bench
