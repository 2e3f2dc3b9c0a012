#include "package/messages.h"

#include "ado/error.h"
#include "package/services.h"

namespace basalt {

namespace {

// As many places as the host's numbered messages have.
constexpr std::size_t kMostTexts = 11;

std::vector<std::string> withoutTrailingEmpty(std::vector<std::string> texts) {
    while (!texts.empty() && texts.back().empty())
        texts.pop_back();
    return texts;
}

int send(MessageRequest request) {
    request.arguments = withoutTrailingEmpty(std::move(request.arguments));
    return attachedHost().Messages().show(request);
}

void tell(std::string operation, std::vector<std::string> arguments, ::QWidget* control = nullptr,
          ::QWidget* form = nullptr) {
    send({.operation = std::move(operation), .arguments = std::move(arguments), .control = control, .form = form});
}

// Whether the user confirms. Enter on the untouched question is a no: nothing is lost by a hasty key.
bool confirm(std::string operation, std::vector<std::string> arguments) {
    return send({.operation = std::move(operation),
                 .arguments = std::move(arguments),
                 .buttons = {TMessageButton::Yes, TMessageButton::No},
                 .defaultButton = TMessageButton::No}) == mrYes;
}

MessageRequest numbered(MessageKind kind, int number, const std::vector<std::string>& texts) {
    if (texts.size() > kMostTexts) {
        throw UsageError("message " + std::to_string(number) + " takes at most " + std::to_string(kMostTexts) +
                         " texts, not " + std::to_string(texts.size()));
    }
    return {.operation = "ShowSmartMessage", .kind = kind, .number = number, .arguments = texts};
}

void point(MessageRequest request, ::QWidget* control, ::QWidget* form, int displayMilliseconds) {
    request.control = control;
    request.form = form;
    request.displayMilliseconds = displayMilliseconds;
    send(std::move(request));
}

}  // namespace

void MsgRequiredField(const std::string& fieldTitle, ::QWidget* control, ::QWidget* form) {
    tell("MsgRequiredField", {fieldTitle}, control, form);
}

void MsgRepeatedField(const std::string& fieldTitle, const std::string& entityTitle, ::QWidget* control,
                      ::QWidget* form) {
    tell("MsgRepeatedField", {fieldTitle, entityTitle}, control, form);
}

bool MsgDeleteRow() {
    return confirm("MsgDeleteRow", {});
}

bool MsgDeleteItem(const std::string& itemTitle) {
    return confirm("MsgDeleteItem", {itemTitle});
}

void MSGInUse(const std::string& entityTitle) {
    tell("MSGInUse", {entityTitle});
}

void MsgHasSubRecords(const std::string& entityTitle) {
    tell("MsgHasSubRecords", {entityTitle});
}

void DeleteDefault(const std::string& entityTitle, const std::string& actionTitle) {
    tell("DeleteDefault", {entityTitle, actionTitle});
}

void NotEditable(const std::string& entityTitle) {
    tell("NotEditable", {entityTitle});
}

void MsgNotSelected(const std::string& entityTitle, ::QWidget* control, ::QWidget* form) {
    tell("MsgNotSelected", {entityTitle}, control, form);
}

int ShowSmartMessage(TConfirmationMessage message, const std::vector<std::string>& texts, TMessageButtons buttons,
                     TMessageButton defaultButton) {
    MessageRequest request = numbered(MessageKind::Confirmation, message.number, texts);
    request.buttons = std::move(buttons);
    request.defaultButton = defaultButton;
    return send(std::move(request));
}

void ShowSmartMessage(TNotificationMessage message, const std::vector<std::string>& texts, ::QWidget* control,
                      ::QWidget* form, int displayMilliseconds) {
    point(numbered(MessageKind::Notification, message.number, texts), control, form, displayMilliseconds);
}

void ShowSmartMessage(TErrorMessage message, const std::vector<std::string>& texts, ::QWidget* control, ::QWidget* form,
                      int displayMilliseconds) {
    point(numbered(MessageKind::Error, message.number, texts), control, form, displayMilliseconds);
}

void ShowFlashMessage(const std::string& text, int displayMilliseconds) {
    send({.operation = "ShowFlashMessage", .arguments = {text}, .displayMilliseconds = displayMilliseconds});
}

void ShowMessage(const std::string& text) {
    tell("ShowMessage", {text});
}

void ShowTooltipMessage(std::uintptr_t handle, const std::string& text, const std::vector<std::string>& values) {
    MessageRequest request{.operation = "ShowTooltipMessage", .arguments = {text}, .controlHandle = handle};
    request.arguments.insert(request.arguments.end(), values.begin(), values.end());
    send(std::move(request));
}

}  // namespace basalt
