// A session that notes what passes through it, so that the order of statements, transactions and other calls can be
// compared as one list.
//
//   ScriptedSession script;
//   std::vector<std::string> trace;
//   TracingSession session(script, trace);     // "begin", "delete from CostLevel ...", "commit"
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt {

class TracingSession final : public Session {
public:
    TracingSession(Session& inner, std::vector<std::string>& trace) : inner_(inner), trace_(trace) {}

    // Run after the line is noted; may throw, as a database that fails does.
    std::function<void()> onBegin;
    std::function<void()> onCommit;

    BatchResult run(std::string_view sql) override {
        trace_.emplace_back(sql);
        return inner_.run(sql);
    }
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override {
        std::string line(sql);
        for (const Value& value : parameters)
            line += " | " + toText(value);
        trace_.push_back(std::move(line));
        return inner_.run(sql, parameters);
    }
    ProcedureInfo procedure(std::string_view name) override { return inner_.procedure(name); }
    CallResult call(std::string_view name, std::span<const Argument> arguments) override {
        trace_.push_back("call " + std::string(name));
        return inner_.call(name, arguments);
    }
    void begin() override {
        trace_.emplace_back("begin");
        if (onBegin) onBegin();
        inner_.begin();
    }
    void commit() override {
        trace_.emplace_back("commit");
        if (onCommit) onCommit();
        inner_.commit();
    }
    void rollback() override {
        trace_.emplace_back("rollback");
        inner_.rollback();
    }
    [[nodiscard]] bool inTransaction() const override { return inner_.inTransaction(); }
    TableInfo table(std::string_view name) override { return inner_.table(name); }
    void limitTime(std::optional<int> seconds) override { inner_.limitTime(seconds); }
    [[nodiscard]] std::string engine() const override { return inner_.engine(); }
    [[nodiscard]] std::string location() const override { return inner_.location(); }

private:
    Session& inner_;
    std::vector<std::string>& trace_;
};

}  // namespace basalt
