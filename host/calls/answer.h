// An answer to one of the host's questions, prepared by a script or on the command line.
//
//   Answer::parse("yes")->value     mrYes
//   answerName(mrCancel)            "cancel"
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "package/messages.h"

namespace basalt::host {

struct Answer {
    int value = mrNone;  // a TModalResult
    bool named = false;  // written as a word; must then be among the question's buttons

    // "yes", "no", "cancel", "ok" or a decimal number; nullopt for anything else.
    [[nodiscard]] static std::optional<Answer> parse(std::string_view text);
    // A number answers any question as it stands; a word only one that has that button.
    [[nodiscard]] bool fits(const MessageRequest& question) const;
};

// The word for a button's result, the number for any other result.
[[nodiscard]] std::string answerName(int modalResult);
[[nodiscard]] int modalResultOf(TMessageButton button);
// The question's buttons as words: "yes, no, cancel".
[[nodiscard]] std::string buttonNames(const MessageRequest& question);
// What the message says, in one line for logs and errors: ShowSmartMessage 10006 (first | second).
[[nodiscard]] std::string describe(const MessageRequest& message);

}  // namespace basalt::host
