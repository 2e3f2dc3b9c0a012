// Where a run of steps stands, and which answers it has left.
//
//   StepScript script(parseSteps(text, file), file);
//   for (; const Step* step = script.current(); script.advance()) ...
//
// An answer serves a question that comes after it (kept until one comes) or one that came up during the action above
// it: the question then takes it ahead of time, over the expectations between.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/steps/step.h"

namespace basalt::host {

class StepScript {
public:
    StepScript(std::vector<Step> steps, std::string file)
        : steps_(std::move(steps)), file_(std::move(file)), line_(steps_.empty() ? 1 : steps_.front().line) {}

    [[nodiscard]] const std::string& file() const { return file_; }
    // The step to do next; null when all are done.
    [[nodiscard]] const Step* current() const { return next_ < steps_.size() ? &steps_[next_] : nullptr; }
    // Passes the current step. An answer that no question has taken is kept for the questions to come.
    void advance();
    // The line of the step passed last; what comes before any step is told at the first.
    [[nodiscard]] int line() const { return line_; }

    // The answer for a question that is asked now; nullopt when there is none.
    [[nodiscard]] std::optional<Answer> takeAnswer();
    // The first answer passed that no question has taken.
    [[nodiscard]] const Step* unusedAnswer() const { return kept_.empty() ? nullptr : &steps_[kept_.front()]; }

private:
    std::vector<Step> steps_;
    std::string file_;
    std::size_t next_ = 0;
    int line_;
    std::deque<std::size_t> kept_;  // indices of passed answers
    std::vector<std::size_t> takenAhead_;
};

}  // namespace basalt::host
