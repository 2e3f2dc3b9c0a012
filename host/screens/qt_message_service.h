// Messages at the screen: boxes that wait for an answer, notes that do not.
//
//   QtMessageService messages(host.catalogue());
//   host.setMessages(messages);
#pragma once

#include "host/services/message_catalogue.h"

namespace basalt::host {

class QtMessageService final : public MessageService {
public:
    explicit QtMessageService(const MessageCatalogue& catalogue) : catalogue_(catalogue) {}
    int show(const MessageRequest& request) override;

private:
    const MessageCatalogue& catalogue_;
};

}  // namespace basalt::host
