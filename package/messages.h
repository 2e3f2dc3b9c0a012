// Messages of the host, under the names by which the module calls them.
//
// The module passes the variable words; the sentence belongs to the host. Every operation below makes one
// MessageRequest and hands it to the attached host's MessageService, so a test answers all of them at one place.
//
//   if (!MsgDeleteRow()) return false;
//   ShowSmartMessage(TErrorMessage{30055}, {names});
//
// Controls and forms are opaque here (the data functions know no widgets); null where there is none.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "package/types.h"

class QWidget;

namespace basalt {

enum class MessageKind { None, Confirmation, Notification, Error };

// The three kinds of numbered messages.
struct TConfirmationMessage {
    int number;
};
struct TNotificationMessage {
    int number;
};
struct TErrorMessage {
    int number;
};

// A set of buttons, in the order of their display.
enum class TMessageButton { Ok, Cancel, Yes, No };
using TMessageButtons = std::vector<TMessageButton>;

// One message as the host receives it.
struct MessageRequest {
    std::string operation;                 // "MsgRequiredField", "ShowSmartMessage", ...
    MessageKind kind = MessageKind::None;  // ShowSmartMessage only
    int number = 0;                        // ShowSmartMessage only; 0 for the named operations
    std::vector<std::string> arguments =
        {};                        // the variable words, or the placeholders' texts; trailing empty ones dropped
    TMessageButtons buttons = {};  // empty: nothing to answer
    TMessageButton defaultButton = TMessageButton::Ok;
    ::QWidget* control = nullptr;
    ::QWidget* form = nullptr;
    int displayMilliseconds = 0;       // a note that goes away by itself; 0 stays until answered
    std::uintptr_t controlHandle = 0;  // ShowTooltipMessage only: the native window id that it points at

    [[nodiscard]] bool isQuestion() const { return !buttons.empty(); }
};

class MessageService {
public:
    virtual ~MessageService() = default;
    // Shows the message and returns the button pressed as a TModalResult; mrNone for messages without an answer.
    virtual int show(const MessageRequest& request) = 0;
};

void MsgRequiredField(const std::string& fieldTitle, ::QWidget* control = nullptr, ::QWidget* form = nullptr);
void MsgRepeatedField(const std::string& fieldTitle, const std::string& entityTitle, ::QWidget* control = nullptr,
                      ::QWidget* form = nullptr);
[[nodiscard]] bool MsgDeleteRow();
[[nodiscard]] bool MsgDeleteItem(const std::string& itemTitle);
void MSGInUse(const std::string& entityTitle);
void MsgHasSubRecords(const std::string& entityTitle);
void DeleteDefault(const std::string& entityTitle, const std::string& actionTitle);
void NotEditable(const std::string& entityTitle);
void MsgNotSelected(const std::string& entityTitle, ::QWidget* control = nullptr, ::QWidget* form = nullptr);

// Numbered messages: up to eleven placeholder texts (more are a UsageError). A confirmation returns the button pressed.
int ShowSmartMessage(TConfirmationMessage message, const std::vector<std::string>& texts = {},
                     TMessageButtons buttons = {TMessageButton::Yes, TMessageButton::No},
                     TMessageButton defaultButton = TMessageButton::No);
void ShowSmartMessage(TNotificationMessage message, const std::vector<std::string>& texts = {},
                      ::QWidget* control = nullptr, ::QWidget* form = nullptr, int displayMilliseconds = 0);
void ShowSmartMessage(TErrorMessage message, const std::vector<std::string>& texts = {}, ::QWidget* control = nullptr,
                      ::QWidget* form = nullptr, int displayMilliseconds = 0);
// A short note that does not wait for an answer; 0 milliseconds leave the time to the host.
void ShowFlashMessage(const std::string& text, int displayMilliseconds = 0);
// A plain box with a text of the caller's own, for what the host's catalogue does not know.
void ShowMessage(const std::string& text);
// A balloon that points at a control. `handle` is the control's native window id.
void ShowTooltipMessage(std::uintptr_t handle, const std::string& text, const std::vector<std::string>& values = {});

}  // namespace basalt
