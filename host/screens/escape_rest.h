// Escape that has closed a message or a notice has done its work: pressed twice or kept down, it must not go on and
// close the screen beneath.
//
//   EscapeRest::ofApplication().begin();      // Escape has just closed what lay over a screen
//
// For 0.4 s after that no window gets an Escape, and no repetition of the key until it has been let go.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <functional>

#include "host/screens/key_moment.h"

namespace basalt::host {

class EscapeRest final : public QObject {
public:
    using Clock = std::function<qint64()>;  // in milliseconds

    static EscapeRest& ofApplication();

    // stamp: the own time of the key that has closed it. Without it the rest counts from now, as it must where the key
    // came while no window had its turn.
    void begin(quint64 stamp = 0);
    // An Escape that is pressed now would be of no effect.
    [[nodiscard]] bool isOn() const;

    // Takes the time from elsewhere; from the computer again when it is empty. Nothing rests then.
    void setClock(Clock clock);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit EscapeRest(QObject* parent) : QObject(parent) { setClock({}); }
    void end();
    [[nodiscard]] bool belongsToTheLast(const QKeyEvent& escape) const;

    Clock clock_;
    KeyMoment began_;
    bool resting_ = false;  // until an Escape has been let through
};

}  // namespace basalt::host
