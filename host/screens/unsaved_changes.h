// What becomes of changes when the user leaves a form without having saved them.
//
//   if (isSaved_) return true;
//   return mayLeaveUnsaved(host.Messages(), *window(), [this] { return write(); }, [this] { show(stored_); });
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "package/messages.h"

namespace basalt::host {

// Asks over the form whether to save. True when the form may be left: its changes were saved, which save tells, or the
// user does not want them, which drop (if any) is told of. False when they could not be saved or the user stays.
// `before` is one text, what the user is about to do, where that is not to leave the form.
[[nodiscard]] bool mayLeaveUnsaved(MessageService& messages, QWidget& form, const std::function<bool()>& save,
                                   const std::function<void()>& drop = {}, const std::vector<std::string>& before = {});
// The same with a question of the form's own, to be answered with yes, no or cancel.
[[nodiscard]] bool mayLeaveUnsaved(MessageService& messages, const MessageRequest& question,
                                   const std::function<bool()>& save, const std::function<void()>& drop = {});

}  // namespace basalt::host
