// Closes a list as soon as its grid has painted a long list's rows.
//
//   CloseAfterFirstPaint closer(10'000);
//   qApp->installEventFilter(&closer);
#pragma once

#include <QEvent>
#include <QTableView>

namespace basalt::bench {

class CloseAfterFirstPaint final : public QObject {
public:
    // Grids with fewer rows are let be.
    explicit CloseAfterFirstPaint(int rows) : rows_(rows) {}

    int painted = 0;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint) return false;
        auto* widget = qobject_cast<QWidget*>(watched);
        auto* table = widget ? qobject_cast<QTableView*>(widget->parentWidget()) : nullptr;
        if (!table || table->viewport() != widget || table->model()->rowCount() < rows_) return false;
        ++painted;
        // The paint itself counts: the screen closes once it is done.
        QMetaObject::invokeMethod(
            widget->window(), [window = widget->window()] { window->close(); }, Qt::QueuedConnection);
        return false;
    }

private:
    int rows_;
};

}  // namespace basalt::bench
