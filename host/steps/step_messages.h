// The messages of a run of steps: each is kept until a step claims it, and questions are answered by the steps.
#pragma once

#include <deque>
#include <functional>

#include "host/steps/step_script.h"
#include "package/messages.h"

namespace basalt::host {

class StepMessages final : public MessageService {
public:
    explicit StepMessages(StepScript& script) : script_(script) {}

    // Called with what was expected and found when a question has no fitting answer.
    std::function<void(const std::string& complaint)> onUnanswered;

    int show(const MessageRequest& request) override;
    // From now on every question is answered so that screens close and nothing is saved.
    void discardFromNowOn() { discarding_ = true; }

    // Takes the oldest message that nobody has claimed. StepFailure when it is another one or there is none.
    void claim(const ExpectMessage& expected);
    struct Unclaimed {
        MessageRequest message;
        int line;  // of the step during which it came
    };
    // The oldest unclaimed message; null when there is none.
    [[nodiscard]] const Unclaimed* unclaimed() const { return messages_.empty() ? nullptr : &messages_.front(); }

private:
    StepScript& script_;
    std::deque<Unclaimed> messages_;
    bool discarding_ = false;
};

}  // namespace basalt::host
