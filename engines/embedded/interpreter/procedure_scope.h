// What a procedure or function changes for its own duration.
#pragma once

#include "engines/embedded/interpreter/interpreter.h"

namespace basalt::embedded {

class Interpreter::ProcedureScope {
public:
    explicit ProcedureScope(Interpreter& interpreter)
        : interpreter_(interpreter),
          state_(interpreter.executor_.state()),
          scopeIdentity_(state_.scopeIdentity),
          noCount_(state_.noCount),
          abortOnError_(state_.abortOnError),
          lockTimeout_(state_.lockTimeout) {
        if (interpreter_.calls_ >= kDeepestCall) {
            throw DatabaseError(ErrorCategory::Limit, "42000", 217,
                                "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit " +
                                    std::to_string(kDeepestCall) + ").");
        }
        ++interpreter_.calls_;
        ++state_.nestLevel;
        state_.scopeIdentity = Null{};
    }
    ProcedureScope(const ProcedureScope&) = delete;
    ProcedureScope& operator=(const ProcedureScope&) = delete;
    ~ProcedureScope() {
        --interpreter_.calls_;
        --state_.nestLevel;
        state_.scopeIdentity = scopeIdentity_;
        state_.noCount = noCount_;
        state_.abortOnError = abortOnError_;
        if (state_.lockTimeout != lockTimeout_) interpreter_.executor_.setLockTimeout(lockTimeout_);
    }

private:
    Interpreter& interpreter_;
    SessionState& state_;
    Value scopeIdentity_;
    bool noCount_;
    bool abortOnError_;
    int lockTimeout_;
};

}  // namespace basalt::embedded
