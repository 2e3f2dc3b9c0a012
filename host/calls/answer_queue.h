// Answers questions from a list, in order, where no person is at hand.
#pragma once

#include <deque>
#include <vector>

#include "host/calls/answer.h"

namespace basalt::host {

class AnswerQueue final : public MessageService {
public:
    explicit AnswerQueue(const std::vector<Answer>& answers) : answers_(answers.begin(), answers.end()) {}

    // UsageError that names the question when no answer is left or the next one is none of its buttons.
    int show(const MessageRequest& request) override;
    // UsageError when an answer was never asked for.
    void requireEmpty() const;

private:
    std::deque<Answer> answers_;
};

}  // namespace basalt::host
