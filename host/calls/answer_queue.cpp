#include "host/calls/answer_queue.h"

#include "ado/error.h"

namespace basalt::host {

int AnswerQueue::show(const MessageRequest& request) {
    if (!request.isQuestion()) return mrNone;
    if (answers_.empty()) {
        throw UsageError("the question " + describe(request) +
                         " has no answer; it can be one of: " + buttonNames(request));
    }
    const Answer answer = answers_.front();
    answers_.pop_front();
    if (!answer.fits(request)) {
        throw UsageError("the answer " + answerName(answer.value) + " does not fit the question " + describe(request) +
                         "; it can be one of: " + buttonNames(request));
    }
    return answer.value;
}

void AnswerQueue::requireEmpty() const {
    if (answers_.empty()) return;
    throw UsageError("the answer " + answerName(answers_.front().value) + " was not asked for");
}

}  // namespace basalt::host
