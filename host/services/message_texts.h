// The sentences themselves. %1 to %11 stand for the caller's words; %% is a percent sign.
#pragma once

#include <string>
#include <string_view>

#include "ado/error.h"

namespace basalt::host {

struct MessageText {
    std::string_view operation;  // empty for a numbered message
    int number = 0;
    std::string_view title;
    std::string_view text;
    std::string_view withoutWords;  // when the caller passes no words; empty: `text` serves
};

// Null when there is none.
[[nodiscard]] const MessageText* findOperationText(std::string_view operation);
[[nodiscard]] const MessageText* findNumberText(int number);
[[nodiscard]] std::string_view errorSentence(ErrorCategory category);
// Of an error that its category does not tell well enough, by the server's number; empty for the others.
[[nodiscard]] std::string_view numberedErrorSentence(int nativeCode);
// A text that is too long: %1 its title, %2 how much fits, %3 how much there is; and where only the title is known.
[[nodiscard]] std::string_view tooLongSentence(bool limitKnown);

}  // namespace basalt::host
