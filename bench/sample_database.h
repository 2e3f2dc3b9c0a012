// The database that the benchmarks read: a table of price levels for point queries, and a large table of 16 columns of
// mixed types, as a list of goods has them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace basalt::bench {

inline constexpr int kLevels = 1000;
inline constexpr const char* kGoodsStatement = "select * from Goods";
// The same columns, decimals and dates without their declared types: SOCI would read what is declared a date or a
// decimal as a text of its own form, and fail.
inline constexpr const char* kGoodsStatementUndeclared =
    "select Code, Active, Kind, UnitCode, Barcode, Weight, +Price, +Cost, Name, AbbName, Place, Comment, +Made, "
    "+Changed, "
    "CategoryCode, +Stock from Goods";

// The statement of the store that reads one level, with its values in the text.
[[nodiscard]] std::string levelStatement(int code);

class SampleDatabase {
public:
    // Makes the file in the folder for temporary files, with so many goods.
    explicit SampleDatabase(int goods);
    ~SampleDatabase();
    SampleDatabase(const SampleDatabase&) = delete;
    SampleDatabase& operator=(const SampleDatabase&) = delete;

    [[nodiscard]] const std::string& file() const { return file_; }

private:
    std::filesystem::path folder_;
    std::string file_;
};

}  // namespace basalt::bench
