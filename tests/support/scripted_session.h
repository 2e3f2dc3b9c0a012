// A session for tests: it answers the statements it was told to expect, in their order and byte for byte, and fails the
// test for any other statement and for one that never comes.
//
//   ScriptedSession session;
//   session.expect("select Code from CostLevel", std::move(rows));
//   session.expectChange("UPDATE [CostLevel] SET [Name] = ? WHERE [Code] = ?", {std::string("الف"), std::int64_t{4}},
//   1); session.expectError("delete CostLevel", DatabaseError(ErrorCategory::Constraint, "23000", 547, "refused"));
//   TADOConnection connection(session);
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ado/names.h"
#include "ado/session.h"

namespace basalt {

class ScriptedSession final : public Session {
public:
    ScriptedSession() = default;
    ~ScriptedSession() override {
        for (const Expected& each : expected_)
            ADD_FAILURE() << "never sent: " << line(each.text, each.values);
    }

    // A statement without parameters that gives these rows.
    void expect(std::string sql, RowSet rows) {
        BatchResult batch;
        batch.results.push_back({.rows = std::move(rows)});
        expectBatch(std::move(sql), {}, std::move(batch));
    }
    // A statement that changes rows.
    void expectChange(std::string sql, std::vector<Value> parameters, std::int64_t affectedRows) {
        BatchResult batch;
        batch.results.push_back({.rows = std::nullopt, .affectedRows = affectedRows});
        expectBatch(std::move(sql), std::move(parameters), std::move(batch));
    }
    void expectBatch(std::string sql, std::vector<Value> parameters, BatchResult batch) {
        CallResult result;
        result.batch = std::move(batch);
        expected_.push_back({std::move(sql), std::move(parameters), {}, std::move(result), std::nullopt});
    }
    // A call, written "exec NAME", with these arguments in their order.
    void expectCall(const std::string& procedure, std::vector<Argument> arguments, CallResult result) {
        expected_.push_back({"exec " + procedure, {}, std::move(arguments), std::move(result), std::nullopt});
    }
    void expectCallError(const std::string& procedure, std::vector<Argument> arguments, DatabaseError error) {
        expected_.push_back({"exec " + procedure, {}, std::move(arguments), {}, std::move(error)});
    }
    void expectError(std::string sql, DatabaseError error) { expectChangeError(std::move(sql), {}, std::move(error)); }
    void expectChangeError(std::string sql, std::vector<Value> parameters, DatabaseError error) {
        expected_.push_back({std::move(sql), std::move(parameters), {}, {}, std::move(error)});
    }

    // Tables and procedures may be asked for at any time; how often is counted.
    void setTable(TableInfo table) { tables_.push_back(std::move(table)); }
    void setProcedure(ProcedureInfo procedure) { procedures_.push_back(std::move(procedure)); }
    int tableRequests = 0;

    // The limit of time that each request came under, in their order.
    std::vector<std::optional<int>> timeLimits;

    // As a database does that loses its connection.
    void dropTransaction() { inTransaction_ = false; }

    BatchResult run(std::string_view sql) override { return std::move(take(std::string(sql), {}, {}).batch); }
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override {
        return std::move(take(std::string(sql), {parameters.begin(), parameters.end()}, {}).batch);
    }
    ProcedureInfo procedure(std::string_view name) override {
        for (const ProcedureInfo& each : procedures_) {
            if (sameName(each.name, name)) return each;
        }
        throw DatabaseError(ErrorCategory::NotFound, "42000", 2812, "there is no procedure " + std::string(name));
    }
    CallResult call(std::string_view name, std::span<const Argument> arguments) override {
        return take("exec " + std::string(name), {}, {arguments.begin(), arguments.end()});
    }
    void begin() override { inTransaction_ = true; }
    void commit() override { inTransaction_ = false; }
    void rollback() override { inTransaction_ = false; }
    [[nodiscard]] bool inTransaction() const override { return inTransaction_; }
    TableInfo table(std::string_view name) override {
        ++tableRequests;
        for (const TableInfo& each : tables_) {
            if (sameName(each.name, name)) return each;
        }
        throw DatabaseError(ErrorCategory::NotFound, "42S02", 208, "there is no table " + std::string(name));
    }
    void limitTime(std::optional<int> seconds) override { timeLimit_ = seconds; }
    [[nodiscard]] std::string engine() const override { return "scripted"; }
    [[nodiscard]] std::string location() const override { return {}; }

private:
    struct Expected {
        std::string text;
        std::vector<Value> values;
        std::vector<Argument> arguments;
        CallResult result;
        std::optional<DatabaseError> error;
    };

    static std::string line(const std::string& text, const std::vector<Value>& values) {
        std::string all = text;
        for (const Value& value : values)
            all += " | " + (isNull(value) ? std::string("null") : toText(value));
        return all;
    }
    static bool same(const std::vector<Argument>& a, const std::vector<Argument>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Argument& x, const Argument& y) {
            return x.name == y.name && x.value == y.value && x.output == y.output;
        });
    }

    CallResult take(const std::string& text, const std::vector<Value>& values, const std::vector<Argument>& arguments) {
        timeLimits.push_back(timeLimit_);
        if (expected_.empty()) {
            ADD_FAILURE() << "not expected: " << line(text, values);
            throw std::logic_error("not expected: " + text);
        }
        Expected next = std::move(expected_.front());
        expected_.pop_front();
        if (next.text != text || next.values != values || !same(next.arguments, arguments)) {
            ADD_FAILURE() << "expected: " << line(next.text, next.values) << "\n     got: " << line(text, values);
            throw std::logic_error("another statement than expected: " + text);
        }
        if (next.error) throw DatabaseError(*next.error);
        return std::move(next.result);
    }

    std::deque<Expected> expected_;
    std::vector<TableInfo> tables_;
    std::vector<ProcedureInfo> procedures_;
    bool inTransaction_ = false;
    std::optional<int> timeLimit_;
};

}  // namespace basalt
