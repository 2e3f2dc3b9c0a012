#include "host/screens/unsaved_changes.h"

namespace basalt::host {

bool mayLeaveUnsaved(MessageService& messages, QWidget& form, const std::function<bool()>& save,
                     const std::function<void()>& drop, const std::vector<std::string>& before) {
    const MessageRequest question{.operation = "MsgUnsavedChanges",
                                  .arguments = before,
                                  .buttons = {TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel},
                                  .defaultButton = TMessageButton::Yes,
                                  .form = &form};
    return mayLeaveUnsaved(messages, question, save, drop);
}

bool mayLeaveUnsaved(MessageService& messages, const MessageRequest& question, const std::function<bool()>& save,
                     const std::function<void()>& drop) {
    const int answer = messages.show(question);
    if (answer == mrYes) return save();
    if (answer != mrNo) return false;
    if (drop) drop();
    return true;
}

}  // namespace basalt::host
