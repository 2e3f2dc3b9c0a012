#include "host/steps/step_messages.h"

#include <algorithm>
#include <array>

#include "host/calls/answer.h"
#include "host/steps/screen_reader.h"
#include "host/steps/step_failure.h"

namespace basalt::host {

namespace {

// The answer that changes nothing: No to saving and to deleting, else the one that backs out.
int harmlessAnswer(const MessageRequest& question) {
    for (TMessageButton button : std::array{TMessageButton::No, TMessageButton::Cancel}) {
        if (std::find(question.buttons.begin(), question.buttons.end(), button) != question.buttons.end()) {
            return modalResultOf(button);
        }
    }
    return modalResultOf(question.buttons.front());
}

bool readAs(const std::vector<std::string>& shown, const std::vector<std::string>& expected) {
    return std::equal(shown.begin(), shown.end(), expected.begin(), expected.end(),
                      [](const std::string& text, const std::string& wanted) {
                          return readsAs(QString::fromStdString(text), wanted);
                      });
}

bool fits(const ExpectMessage& expected, const MessageRequest& message) {
    return expected.operation == message.operation && (!expected.number || *expected.number == message.number) &&
           (!expected.arguments || readAs(message.arguments, *expected.arguments));
}

std::string describeExpected(const ExpectMessage& expected) {
    MessageRequest request;
    request.operation = expected.operation;
    request.number = expected.number.value_or(0);
    request.arguments = expected.arguments.value_or(std::vector<std::string>{});
    return describe(request);
}

}  // namespace

int StepMessages::show(const MessageRequest& request) {
    // What a screen asks only because it is closed at the end, no step can claim.
    if (discarding_ && request.isQuestion()) return harmlessAnswer(request);
    messages_.push_back({request, script_.line()});
    if (!request.isQuestion()) return mrNone;
    const std::optional<Answer> answer = script_.takeAnswer();
    if (answer && answer->fits(request)) return answer->value;
    onUnanswered("expected an answer to " + describe(request) + " (" + buttonNames(request) + "), found " +
                 (answer ? answerName(answer->value) : "none"));
    return harmlessAnswer(request);
}

void StepMessages::claim(const ExpectMessage& expected) {
    if (messages_.empty()) throw StepFailure("message " + describeExpected(expected), "none");
    if (!fits(expected, messages_.front().message)) {
        throw StepFailure("message " + describeExpected(expected), describe(messages_.front().message));
    }
    messages_.pop_front();
}

}  // namespace basalt::host
