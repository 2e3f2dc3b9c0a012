#include "host/screens/qt_message_service.h"

#include <QApplication>

#include "host/screens/balloon.h"
#include "host/screens/message_box.h"
#include "host/screens/toast.h"

namespace basalt::host {
namespace {

QWidget* windowFor(const MessageRequest& request) {
    if (request.form) return request.form->window();
    if (request.control) return request.control->window();
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    return QApplication::activeWindow();
}

QWidget* controlOf(const MessageRequest& request) {
    if (request.control) return request.control;
    return request.controlHandle ? QWidget::find(static_cast<WId>(request.controlHandle)) : nullptr;
}

MessageBoxContent::Mood moodOf(const MessageRequest& request) {
    using Mood = MessageBoxContent::Mood;
    if (request.kind == MessageKind::Error) return Mood::Error;
    if (request.isQuestion()) return Mood::Question;
    return request.kind == MessageKind::Notification ? Mood::Note : Mood::Warning;
}

bool isTechnical(const MessageRequest& request) {
    return request.operation == "DatabaseError" || request.operation == "ProgramError";
}

}  // namespace

int QtMessageService::show(const MessageRequest& request) {
    const RenderedMessage message = catalogue_.render(request);
    const QString text = QString::fromStdString(message.text);
    QWidget* window = windowFor(request);
    if (!request.isQuestion()) {
        if (request.operation == "ShowFlashMessage") {
            if (request.displayMilliseconds > 0) {
                Toast::show(window, text, request.displayMilliseconds);
            } else {
                Toast::show(window, text);
            }
            return mrNone;
        }
        QWidget* control = controlOf(request);
        if (request.operation == "ShowTooltipMessage" && control) {
            Balloon::show(*control, text, request.displayMilliseconds);
            return mrNone;
        }
        if (request.displayMilliseconds > 0 && window) {
            Toast::show(window, text, request.displayMilliseconds);
            return mrNone;
        }
    }

    MessageBoxContent content;
    content.title = QString::fromStdString(message.title);
    content.text = text;
    content.mood = moodOf(request);
    if (isTechnical(request) && request.arguments.size() > 1)
        content.detail = QString::fromStdString(request.arguments[1]);
    if (request.isQuestion()) {
        content.buttons = request.buttons;
        content.defaultButton = request.defaultButton;
    }
    MessageBox box(content, catalogue_, window);
    const int answer = box.ask();
    return request.isQuestion() ? answer : mrNone;
}

}  // namespace basalt::host
