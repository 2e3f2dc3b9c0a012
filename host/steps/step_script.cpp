#include "host/steps/step_script.h"

#include <algorithm>

namespace basalt::host {

void StepScript::advance() {
    const Step& step = steps_.at(next_);
    if (std::holds_alternative<AnswerStep>(step.action) &&
        std::find(takenAhead_.begin(), takenAhead_.end(), next_) == takenAhead_.end()) {
        kept_.push_back(next_);
    }
    line_ = step.line;
    ++next_;
}

std::optional<Answer> StepScript::takeAnswer() {
    if (!kept_.empty()) {
        const std::size_t index = kept_.front();
        kept_.pop_front();
        return std::get<AnswerStep>(steps_[index].action).answer;
    }
    for (std::size_t i = next_; i < steps_.size(); ++i) {
        const auto* step = std::get_if<AnswerStep>(&steps_[i].action);
        if (!step && !isExpectation(steps_[i].action)) break;
        if (!step || std::find(takenAhead_.begin(), takenAhead_.end(), i) != takenAhead_.end()) continue;
        takenAhead_.push_back(i);
        return step->answer;
    }
    return std::nullopt;
}

}  // namespace basalt::host
