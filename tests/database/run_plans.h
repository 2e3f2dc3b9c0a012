// The plan of every statement that SQLite really runs, taken on the connection that runs it, with its temporary tables.
//
//   RunPlans plans;                                            // before the database is opened
//   const auto session = EmbeddedSession::open(...);
//   const std::vector<std::string> steps = plans.of([&] { session->call(...); });
#pragma once

#include <sqlite3.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace basalt::test {

class RunPlans {
public:
    RunPlans() {
        current() = this;
        if (sqlite3_auto_extension(reinterpret_cast<void (*)()>(&watch)) != SQLITE_OK)
            throw std::runtime_error("connections cannot be watched");
    }
    ~RunPlans() {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&watch));
        current() = nullptr;
    }
    RunPlans(const RunPlans&) = delete;
    RunPlans& operator=(const RunPlans&) = delete;

    // The steps of all statements that the work runs, in its order, as SQLite names them.
    [[nodiscard]] std::vector<std::string> of(const std::function<void()>& work) {
        steps_.clear();
        listening_ = true;
        work();
        listening_ = false;
        return steps_;
    }

private:
    static RunPlans*& current() {
        static RunPlans* plans = nullptr;
        return plans;
    }

    static int watch(sqlite3* database, char** /*error*/, const struct sqlite3_api_routines* /*routines*/) {
        return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, &ran, nullptr);
    }

    static int ran(unsigned /*type*/, void* /*context*/, void* statement, void* text) {
        // A trigger's program tells its name as a comment, and its steps are those of its statement.
        const bool isTrigger = std::string(static_cast<const char*>(text)).starts_with("--");
        if (current() != nullptr && current()->listening_ && !isTrigger)
            current()->take(static_cast<sqlite3_stmt*>(statement));
        return 0;
    }

    void take(sqlite3_stmt* statement) {
        listening_ = false;  // what follows is a statement as well
        const std::string explain = std::string("EXPLAIN QUERY PLAN ") + sqlite3_sql(statement);
        sqlite3_stmt* plan = nullptr;
        if (sqlite3_prepare_v2(sqlite3_db_handle(statement), explain.c_str(), -1, &plan, nullptr) == SQLITE_OK) {
            while (sqlite3_step(plan) == SQLITE_ROW)
                steps_.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(plan, 3)));
        } else {
            steps_.push_back("no plan: " + explain);
        }
        sqlite3_finalize(plan);
        listening_ = true;
    }

    bool listening_ = false;
    std::vector<std::string> steps_;
};

}  // namespace basalt::test
