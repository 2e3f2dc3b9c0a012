#include "host/screens/screen_context.h"

#include <QDialog>
#include <QPointer>
#include <utility>

#include "ado/progress.h"
#include "host/screens/field_title.h"

namespace basalt::host {

void ScreenContext::guarded(QWidget* origin, const std::function<void()>& handler) {
    // The handler may close and free the window that it was called from.
    const QPointer<QWidget> window(origin ? origin->window() : nullptr);
    try {
        try {
            handler();
        } catch (const std::exception& error) {
            // Whoever has given up a request need not be told so.
            const auto* failure = dynamic_cast<const DatabaseError*>(&error);
            if (failure && isCancelled(*failure)) return;
            if (dynamic_cast<const OutputCancelled*>(&error)) return;
            MessageRequest request = host_.catalogue().errorRequest(
                error, [&](const std::string& field) { return fieldTitle(window, field); });
            request.form = window;
            host_.Messages().show(request);
            // The text that is too long is where the work goes on.
            const auto* tooLong = dynamic_cast<const ValueTooLong*>(&error);
            QWidget* input = tooLong && window ? inputOf(*window, tooLong->field()) : nullptr;
            if (input) input->setFocus();
        }
    } catch (...) {
        // An error must not fly through the event loop. The first one is what matters to whoever waits for the screen.
        if (!unshown_) unshown_ = std::current_exception();
        if (auto* dialog = qobject_cast<QDialog*>(window.data())) dialog->done(QDialog::Rejected);
    }
}

void ScreenContext::rethrowUnshown() {
    if (unshown_) std::rethrow_exception(std::exchange(unshown_, nullptr));
}

}  // namespace basalt::host
