// The price report over 100,000 goods: opening it, painting a page, searching and exporting, each against what the work
// costs without a screen. With --goods=N more goods are opened once, for the memory and the time of it.
#include <xlsxwriter.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <stdexcept>

#include "bench/first_paint.h"
#include "bench/peak_memory.h"
#include "bench/program.h"
#include "bench/signed_in_host.h"
#include "bench/value_bytes.h"
#include "costlevel/costlevel_dm.h"
#include "engines/embedded/embedded_session.h"
#include "host/screens/screen_services_impl.h"
#include "host/screens/search_manager.h"
#include "host/screens/smart_grid.h"
#include "host/services/deploy.h"
#include "package/basalt_interface_unt.h"

namespace basalt::bench {
namespace {

constexpr int kFirstGoods = 1'000;
constexpr int kGoods = 100'000;
constexpr int kPageRows = 40;
constexpr int kRepaints = 300;
constexpr double kRepaintLimit = 8.0;  // milliseconds

// Goods of the sizes that shops have them: names of thirty characters, two barcodes, eight of ten prices.
void fill(Session& session, int goods) {
    host::deployDatabase(session, {});
    session.run(
        "DELETE FROM CostLevel; "
        "INSERT INTO CostLevel (Code, Name, CostType) VALUES (1, N'تک‌فروشی', 1), (2, N'عمده‌فروشی', 1), "
        "(3, N'همکار', 1), (4, N'نمایندگی', 1), (5, N'زنجیره‌ای', 1), (6, N'سازمانی', 1), (7, N'اینترنتی', 1), "
        "(8, N'صادراتی', 1), (9, N'پرسنلی', 1), (10, N'جشنواره', 1)");
    for (int code = 1; code <= kFirstGoods; ++code) {
        const std::string number = std::to_string(code);
        session.run("INSERT INTO GoodInf (Code, Name, AbbName, ConsumerPrice) VALUES (" + number +
                    ", N'کالای شماره ' + N'" + number + " بسته دوازده تایی', N'!62610010" + number + "!62610020" +
                    number + "', " + std::to_string(code * 1250) + ")");
    }
    for (int have = kFirstGoods; have < goods; have += kFirstGoods) {
        session.run("INSERT INTO GoodInf (Code, Name, AbbName, ConsumerPrice) SELECT Code + " + std::to_string(have) +
                    ", Name, AbbName, ConsumerPrice FROM GoodInf WHERE Code <= " + std::to_string(kFirstGoods));
    }
    std::string columns = "GoodCode";
    std::string prices = "Code";
    for (const char* direction : {"Sell", "Buy"}) {
        for (int level = 1; level <= 8; ++level) {
            columns += std::string(", CostLevel_") + direction + "_" + std::to_string(level);
            prices += ", Code * " + std::to_string(100 + level) + ".25";
        }
    }
    session.run("INSERT INTO GoodCostDiscount (" + columns + ") SELECT " + prices + " FROM GoodInf");
}

// The report's grid without its screen, over both halves of the rows.
class ReportGrid {
public:
    explicit ReportGrid(host::HostScreenServices& screens)
        : grid(screens.context(), QStringLiteral("Report_GRD"), nullptr), manager(screens.createSearchManager()) {
        grid.AddColumn({.FieldName = "Code", .Title = QStringLiteral("کد کالا")});
        grid.AddColumn({.FieldName = "AbbName", .Title = QStringLiteral("بارکد کالا"), .Width = 200});
        grid.AddColumn({.FieldName = "Name", .Title = QStringLiteral("نام کالا"), .Width = 200});
        for (int level = 1; level <= kPriceLevels; ++level)
            grid.AddColumn({.FieldName = "F" + std::to_string(level),
                            .Title = QStringLiteral("سطح %1").arg(level),
                            .Width = 100,
                            .DisplayFormat = "#,#0.##;-#,#0.##;0"});
        search = screens.createGeneralSearch("Search", nullptr);
        search->AddItem({.FieldName = "Name", .Title = "عنوان"});
        search->init();
        store.CostReport_Get();
        manager->SetDataSource(&store.CostReport_DS);
        manager->SetSQLScript(store.CostReport_QUR.SQL.Text());
        manager->AddFrame(search);
        grid.SetDataSource(&store.CostReport_DS);
        // All thirteen columns and forty rows are in sight.
        auto& view = *static_cast<QTableView*>(grid.View());
        grid.resize(1600, kPageRows * view.rowHeight(0) + 60);
        grid.show();
        QApplication::processEvents();
    }
    ~ReportGrid() { delete search; }
    ReportGrid(const ReportGrid&) = delete;
    ReportGrid& operator=(const ReportGrid&) = delete;

    [[nodiscard]] QTableView& view() { return *static_cast<QTableView*>(grid.View()); }

    TCostLevel_DM store;
    host::SmartGrid grid;
    std::unique_ptr<TVaroSearchManager> manager;
    TGeneral_Search_Frame* search = nullptr;
};

// Milliseconds of processor time for a page's repaint at the median, at random places of the list.
double medianRepaint(ReportGrid& report) {
    QTableView& view = report.view();
    std::mt19937 random(7);
    std::uniform_int_distribution<int> anyRow(0, view.model()->rowCount() - kPageRows - 1);
    std::vector<double> times;
    for (int i = 0; i < kRepaints; ++i) {
        view.scrollTo(view.model()->index(anyRow(random), 0), QAbstractItemView::PositionAtTop);
        const std::clock_t start = std::clock();
        view.viewport()->repaint();
        times.push_back(1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::nth_element(times.begin(), times.begin() + kRepaints / 2, times.end());
    return times[kRepaints / 2];
}

// What the export writes, fed to the library straight from memory.
void writePlainWorkbook(const TDataSet& rows, const std::string& path) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    lxw_workbook* book = workbook_new_opt(path.c_str(), &options);
    lxw_format* price = workbook_add_format(book);
    format_set_num_format(price, "#,#0.##;-#,#0.##;0");
    lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
    constexpr int kColumns[] = {0, 2, 1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    for (int row = 0; row < rows.RecordCount(); ++row) {
        lxw_col_t at = 0;
        for (const int column : kColumns) {
            const auto sheetRow = static_cast<lxw_row_t>(row + 1);
            const Value value = rows.valueAt(row, column);
            if (const auto* text = std::get_if<std::string>(&value)) {
                worksheet_write_string(sheet, sheetRow, at, text->c_str(), nullptr);
            } else if (!isNull(value)) {
                worksheet_write_number(sheet, sheetRow, at, toDecimal(value).toDouble(), column > 3 ? price : nullptr);
            }
            ++at;
        }
    }
    workbook_close(book);
}

// Answers every question for a file with the same name.
class OneFile final : public host::OutputServices {
public:
    explicit OneFile(QString path) : path_(std::move(path)) {}
    std::optional<QString> chooseFile(QWidget*, const QString&, const QString&, const QString&) override {
        return path_;
    }
    void preview(host::ScreenContext&, QWidget*, host::PrintDocument&, const QPageLayout&) override {}

private:
    QString path_;
};

// The most that is held while the open list is searched in and read anew, in parts of its values' bytes.
std::vector<Ratio> searchPeaks(host::HostScreenServices& screens, std::size_t bytes) {
    std::vector<Ratio> peaks;
    const PeakMemory memory;
    std::unique_ptr<ReportGrid> report;
    const auto measure = [&](const std::string& what, double leastRows, const std::function<void()>& work) {
        QElapsedTimer timer;
        timer.start();
        const auto peak = memory.of([&] {
            work();
            report->view().viewport()->repaint();
        });
        const int rows = report->store.CostReport_QUR.RecordCount();
        std::printf("%s: %d rows in %.2f s\n", what.c_str(), rows, static_cast<double>(timer.elapsed()) / 1e3);
        if (rows < leastRows) throw std::runtime_error(what + ": the rows are not there");
        peaks.push_back({what + ": peak memory / bytes of the list's values",
                         quotient(static_cast<double>(peak.value_or(0)), static_cast<double>(bytes)), 1.5});
    };
    measure("list opened", 1, [&] { report = std::make_unique<ReportGrid>(screens); });
    const int all = report->store.CostReport_QUR.RecordCount();
    const auto search = [&](const char* text) {
        return [&report, text] {
            report->search->findChild<QLineEdit*>()->setText(QString::fromUtf8(text));
            if (!static_cast<host::SearchManager&>(*report->manager).finishTyping())
                throw std::runtime_error("the search failed");
        };
    };
    measure("search that finds every fiftieth", all * 0.015, search("12"));
    measure("search cleared", all, search(""));
    measure("search that finds every fourth", all * 0.25, search("7"));
    measure("search cleared again", all, search(""));
    measure("search that finds all", all, search("دوازده"));
    measure("rows read anew", all, [&] { screens.context().host().ResetDataset(report->store.CostReport_QUR); });
    return peaks;
}

// Opening once what is too much to be opened again and again.
bool openOnce(Session& session, host::HostScreenServices& screens, const std::string& statement, int goods,
              std::size_t bytes, std::size_t peak, double screenSeconds) {
    QElapsedTimer timer;
    timer.start();
    benchmark::DoNotOptimize(session.run(statement));
    const double statementSeconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    std::printf("%d goods: %.1f MB of values, %.1f MB at the peak, %.2f s to the first paint, %.2f s the statement\n",
                goods, static_cast<double>(bytes) / 1e6, static_cast<double>(peak) / 1e6, screenSeconds,
                statementSeconds);
    std::vector<Ratio> ratios = {
        {"screen to first paint / statement and its rows", quotient(screenSeconds, statementSeconds), 1.2},
        {"peak memory of the screen / bytes of its values",
         quotient(static_cast<double>(peak), static_cast<double>(bytes)), 1.5}};
    const std::vector<Ratio> peaks = searchPeaks(screens, bytes);
    ratios.insert(ratios.end(), peaks.begin(), peaks.end());
    return ::basalt::bench::report(ratios);
}

bool run(int count, char** arguments) {
    const int goods = std::max(takeNumber(count, arguments, "goods", kGoods), kFirstGoods);
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    fill(*session, goods);
    SignedInHost host(*session);
    host::HostScreenServices screens(*host);
    host->setScreens(&screens);
    // The program's first screen loads libraries and fonts, which are none of the report's.
    CloseAfterFirstPaint levels(1);
    qApp->installEventFilter(&levels);
    Open_CostLevel_List();
    qApp->removeEventFilter(&levels);
    CloseAfterFirstPaint closer(goods);

    std::string statement;
    std::size_t bytes = 0;
    {
        TCostLevel_DM store;
        store.CostReport_Get();
        statement = store.CostReport_QUR.SQL.Text();
        bytes = valueBytes(store.CostReport_QUR.rowSet());
    }
    qApp->installEventFilter(&closer);
    QElapsedTimer opening;
    opening.start();
    const auto peak = peakMemoryOf([] { Open_CostReport(); });
    const double seconds = static_cast<double>(opening.nsecsElapsed()) / 1e9;
    qApp->removeEventFilter(&closer);
    if (goods > kGoods) return openOnce(*session, screens, statement, goods, bytes, peak.value_or(0), seconds);

    benchmark::RegisterBenchmark("report/statement", [&](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(session->run(statement));
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("report/screen", [&](benchmark::State& state) {
        qApp->installEventFilter(&closer);
        for (auto _ : state) {
            closer.painted = 0;
            Open_CostReport();
            if (closer.painted == 0) state.SkipWithError("the report closed without painting its rows");
        }
        qApp->removeEventFilter(&closer);
    })->Unit(benchmark::kMillisecond);

    QTemporaryDir folder;
    const std::string plainFile = folder.filePath(QStringLiteral("plain.xlsx")).toStdString();
    OneFile output(folder.filePath(QStringLiteral("report.xlsx")));
    screens.setOutput(output);
    ReportGrid report(screens);
    const double repaint = medianRepaint(report);

    benchmark::RegisterBenchmark("xlsx/plain", [&](benchmark::State& state) {
        for (auto _ : state)
            writePlainWorkbook(report.store.CostReport_QUR, plainFile);
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("xlsx/export", [&](benchmark::State& state) {
        for (auto _ : state)
            report.grid.exportWorkbook();
    })->Unit(benchmark::kMillisecond);
    const SmallestTimes times = runRegistered(count, arguments, 3);
    const auto exportPeak = peakMemoryOf([&] { report.grid.exportWorkbook(); });

    // A search that finds every tenth good; each time another text, so that no plan's literals repeat.
    double keystroke = 0;
    double filtered = 0;
    auto* input = report.search->findChild<QLineEdit*>();
    for (int i = 0; i < 5; ++i) {
        const QString wanted = QString::number(10 + i);
        QElapsedTimer timer;
        input->clear();
        timer.start();
        input->setText(wanted);
        report.manager->ExecuteFilter_DataSet();
        report.view().viewport()->repaint();
        const auto own = static_cast<double>(timer.nsecsElapsed());
        const std::string narrowed = report.store.CostReport_QUR.SQL.Text();
        timer.restart();
        benchmark::DoNotOptimize(session->run(narrowed));
        const auto plain = static_cast<double>(timer.nsecsElapsed());
        keystroke = i == 0 ? own : std::min(keystroke, own);
        filtered = i == 0 ? plain : std::min(filtered, plain);
    }

    std::printf("values of 200,000 rows: %.1f MB, workbook export: %.1f MB at its peak\n",
                static_cast<double>(bytes) / 1e6, static_cast<double>(exportPeak.value_or(0)) / 1e6);
    return ::basalt::bench::report(
        {{"100,000 goods: screen to first paint / statement and its rows",
          quotient(times.elapsed("report/screen"), times.elapsed("report/statement")), 1.2},
         {"100,000 goods: peak memory of the screen / bytes of its values",
          quotient(static_cast<double>(peak.value_or(0)), static_cast<double>(bytes)), 1.5},
         {"repaint of 40 rows x 13 columns at the median / 8 ms", repaint / kRepaintLimit, 1.0},
         {"search over 200,000 rows, repainted / its statement", quotient(keystroke, filtered), 1.3},
         {"workbook of 200,000 rows / the library fed from memory",
          quotient(times.of("xlsx/export"), times.of("xlsx/plain")), 1.3}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
