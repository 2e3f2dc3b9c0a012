// The sentences of the host: for each named message and each message number a Persian text with places for the words
// that the caller passes.
//
//   catalogue.render(request).text       "«نام» را وارد کنید."
#pragma once

#include <exception>
#include <functional>
#include <string>

#include "ado/error.h"
#include "package/messages.h"

namespace basalt::host {

struct RenderedMessage {
    std::string title = {};  // of the box
    std::string text = {};
};

class MessageCatalogue {
public:
    // Never fails: an unknown operation or number shows its name and the arguments, so that nothing is lost.
    [[nodiscard]] RenderedMessage render(const MessageRequest& request) const;

    // What went wrong and what to do, for a person at the screen.
    [[nodiscard]] std::string errorText(ErrorCategory category) const;
    // The same for any error; the technical message is not part of it. An OutputError tells that itself.
    [[nodiscard]] std::string errorText(const std::exception& error) const;
    // A request that shows an error: operation "DatabaseError" or "ProgramError", arguments {errorText, detail};
    // "OutputError" with the error's own text when a file or a print could not be made, "MsgTooLong" for a text that is
    // longer than its field.
    // `titleOf` gives the title under which the user knows a field, for errors that name one; without it the field's
    // own name stands.
    using FieldTitles = std::function<std::string(const std::string& field)>;
    [[nodiscard]] MessageRequest errorRequest(const std::exception& error, const FieldTitles& titleOf = {}) const;

    // "بله", "خیر", "تأیید", "انصراف"
    [[nodiscard]] std::string buttonText(TMessageButton button) const;
};

}  // namespace basalt::host
