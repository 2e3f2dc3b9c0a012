#include "host/services/message_catalogue.h"

#include <cctype>

#include "host/services/message_texts.h"
#include "host/services/output_error.h"

namespace basalt::host {

namespace {

constexpr std::size_t kMostWords = 11;

std::string fill(std::string_view pattern, const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%' || i + 1 == pattern.size()) {
            text += pattern[i];
            continue;
        }
        if (pattern[i + 1] == '%') {
            text += '%';
            ++i;
            continue;
        }
        std::size_t number = 0;
        std::size_t end = i + 1;
        while (end < pattern.size() && std::isdigit(static_cast<unsigned char>(pattern[end]))) {
            const std::size_t longer = number * 10 + static_cast<std::size_t>(pattern[end] - '0');
            if (longer > kMostWords) break;
            number = longer;
            ++end;
        }
        if (number == 0) {
            text += pattern[i];
            continue;
        }
        if (number <= words.size()) text += words[number - 1];
        i = end - 1;
    }
    return text;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) text += "، ";
        text += word;
    }
    return text;
}

std::string_view defaultTitle(MessageKind kind) {
    switch (kind) {
        case MessageKind::Confirmation:
            return "پرسش";
        case MessageKind::Error:
            return "خطا";
        case MessageKind::Notification:
        case MessageKind::None:
            break;
    }
    return "توجه";
}

// The column that a server names in its message; empty when it names none.
std::string columnIn(std::string_view message) {
    constexpr std::string_view kBefore = ", column '";
    const std::size_t at = message.find(kBefore);
    if (at == std::string_view::npos) return {};
    const std::string_view rest = message.substr(at + kBefore.size());
    return std::string(rest.substr(0, rest.find('\'')));
}

// The sentence for a text that is too long; empty for other errors and where nothing tells which text it is.
std::string tooLongText(const std::exception& error, const MessageCatalogue::FieldTitles& titleOf) {
    const auto title = [&](const std::string& field) { return titleOf ? titleOf(field) : field; };
    if (const auto* own = dynamic_cast<const ValueTooLong*>(&error)) {
        return fill(tooLongSentence(true),
                    {title(own->field()), std::to_string(own->limit()), std::to_string(own->length())});
    }
    const auto* failure = dynamic_cast<const DatabaseError*>(&error);
    if (!failure || failure->category() != ErrorCategory::Truncation) return {};
    const std::string column = columnIn(failure->what());
    return column.empty() ? std::string() : fill(tooLongSentence(false), {title(column)});
}

// A balloon's text comes from the caller, its values fill it.
RenderedMessage tooltip(const MessageRequest& request) {
    if (request.arguments.empty()) return {std::string(defaultTitle(request.kind)), {}};
    const std::vector<std::string> values(request.arguments.begin() + 1, request.arguments.end());
    return {std::string(defaultTitle(request.kind)), fill(request.arguments.front(), values)};
}

}  // namespace

RenderedMessage MessageCatalogue::render(const MessageRequest& request) const {
    if (request.operation == "ShowTooltipMessage") return tooltip(request);
    const MessageText* known =
        request.number != 0 ? findNumberText(request.number) : findOperationText(request.operation);
    if (!known) {
        const std::string name = request.number != 0 ? "پیام " + std::to_string(request.number) : request.operation;
        const std::string words = joined(request.arguments);
        return {std::string(defaultTitle(request.kind)), words.empty() ? name : name + ": " + words};
    }
    const bool bare = request.arguments.empty() && !known->withoutWords.empty();
    return {std::string(known->title), fill(bare ? known->withoutWords : known->text, request.arguments)};
}

std::string MessageCatalogue::errorText(ErrorCategory category) const {
    return std::string(errorSentence(category));
}

std::string MessageCatalogue::errorText(const std::exception& error) const {
    if (const auto* database = dynamic_cast<const DatabaseError*>(&error)) {
        const std::string_view numbered = numberedErrorSentence(database->nativeCode());
        return numbered.empty() ? errorText(database->category()) : std::string(numbered);
    }
    if (dynamic_cast<const OutputError*>(&error)) return error.what();
    if (dynamic_cast<const std::bad_alloc*>(&error)) {
        // The formatter would cut the sentence to pieces.
        // clang-format off
        return "حافظهٔ کافی برای این کار نیست. برنامه‌های دیگر را ببندید یا محدودهٔ کوچک‌تری انتخاب کنید.";
        // clang-format on
    }
    return "خطایی در برنامه رخ داد و این کار انجام نشد. جزئیات آن را به پشتیبانی بدهید.";
}

MessageRequest MessageCatalogue::errorRequest(const std::exception& error, const FieldTitles& titleOf) const {
    // What could not be written is nobody's fault, and its text is meant for the user as it is.
    if (dynamic_cast<const OutputError*>(&error) != nullptr) {
        MessageRequest request;
        request.operation = dynamic_cast<const OptionsError*>(&error) != nullptr ? "OptionsError" : "OutputError";
        request.kind = MessageKind::Error;
        request.arguments = {error.what()};
        return request;
    }
    const bool database = dynamic_cast<const DatabaseError*>(&error) != nullptr;
    MessageRequest request;
    const std::string tooLong = tooLongText(error, titleOf);
    request.operation = !tooLong.empty() ? "MsgTooLong" : database ? "DatabaseError" : "ProgramError";
    request.kind = MessageKind::Error;
    request.arguments = {tooLong.empty() ? errorText(error) : tooLong, error.what()};
    return request;
}

std::string MessageCatalogue::buttonText(TMessageButton button) const {
    switch (button) {
        case TMessageButton::Ok:
            return "تأیید";
        case TMessageButton::Cancel:
            return "انصراف";
        case TMessageButton::Yes:
            return "بله";
        case TMessageButton::No:
            return "خیر";
    }
    return {};
}

}  // namespace basalt::host
