// From the entry point of the price levels to the first painted row of its list, against what its statement costs.
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTableView>
#include <functional>
#include <memory>

#include "ado/query.h"
#include "bench/first_paint.h"
#include "bench/program.h"
#include "bench/signed_in_host.h"
#include "engines/embedded/embedded_session.h"
#include "host/screens/screen_services_impl.h"
#include "host/services/deploy.h"
#include "package/basalt_interface_unt.h"

namespace basalt::bench {
namespace {

constexpr int kLevels = 10'000;
constexpr double kAllowance = 50e6;  // nanoseconds beside twice the statement
const char* const kListStatement = "select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(1)";

void fill(Session& session) {
    host::deployDatabase(session, {.demo = true});
    std::string insert;
    for (int code = 1000; code < 1000 + kLevels; ++code) {
        insert += insert.empty() ? "INSERT INTO CostLevel (Code, Name, Comment, CostType) VALUES " : ", ";
        insert += "(" + std::to_string(code) + ", N'سطح " + std::to_string(code) + "', N'برای آزمون سرعت', 1)";
        if (code % 500 == 499) {
            session.run(insert);
            insert.clear();
        }
    }
}

std::size_t runStatement(TADOQuery& query) {
    query.Close();
    query.SQL = kListStatement;
    query.Open();
    return static_cast<std::size_t>(query.RecordCount());
}

bool run(int count, char** arguments) {
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    fill(*session);
    SignedInHost host(*session);
    host::HostScreenServices screens(*host);
    host->setScreens(&screens);
    CloseAfterFirstPaint closer(kLevels);
    qApp->installEventFilter(&closer);

    TADOQuery query(host->DM().ADOConnection1, "List_QUR");
    benchmark::RegisterBenchmark("levels/statement", [&query](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(runStatement(query));
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("levels/screen", [&closer](benchmark::State& state) {
        for (auto _ : state) {
            closer.painted = 0;
            Open_CostLevel_List();
            if (closer.painted == 0) state.SkipWithError("the list closed without painting its rows");
        }
    })->Unit(benchmark::kMillisecond);
    const SmallestTimes times = runRegistered(count, arguments, 9);
    const double statement = times.elapsed("levels/statement");
    const double screen = times.elapsed("levels/screen");
    return report({{"10,000 levels: screen to first paint / (2 x statement + 50 ms)",
                    screen / (2 * statement + kAllowance), 1.0}});
}

}  // namespace
}  // namespace basalt::bench

int main(int count, char** arguments) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    return basalt::bench::program([&] { return basalt::bench::run(count, arguments); });
}
