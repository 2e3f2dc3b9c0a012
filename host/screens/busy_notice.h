// Tells the user that a request to the database or the writing of a file takes long, and lets him give it up.
//
//   BusyNotice notice(host.session());      // for as long as there are screens
//
// Half a second into a request a small window appears with the time so far and a cancel button; the windows behind it
// are painted but take no input. It goes away by itself when the request is over. A session that cannot be interrupted
// shows none. While the notice is up no timers run on the platforms where they can be held back, because whoever they
// belong to might use the session.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <functional>

#include "ado/progress.h"
#include "ado/session.h"

namespace basalt::host {

class BusyNotice final : public QObject {
public:
    explicit BusyNotice(Session& session);
    ~BusyNotice() override;
    BusyNotice(const BusyNotice&) = delete;
    BusyNotice& operator=(const BusyNotice&) = delete;

    // How long a request may take before the notice appears; half a second unless told.
    void setPatience(int milliseconds) { patience_ = milliseconds; }

    // Asked every few milliseconds by whoever writes a file: how many of its rows or pages are done. False once the
    // user has given it up.
    [[nodiscard]] bool writes(int done, int all);

private:
    // What the notice says; made only when it is shown.
    struct Text {
        const char* title;
        std::function<QString()> text;
    };

    [[nodiscard]] bool goOn(const Text& text);
    void begin();
    void show(const Text& text);
    void goWhenOver();
    void go();

    Session& session_;
    InterruptibleSession* requests_;
    QDialog window_;
    QLabel* text_;
    QWidget* cancel_;
    QElapsedTimer began_;
    QElapsedTimer asked_;    // since the last question of the request
    QElapsedTimer painted_;  // since the windows were last given their turn
    int patience_;
    bool cancelled_ = false;
    bool inTurn_ = false;   // the windows have theirs
    bool leaving_ = false;  // go() is on its way
};

}  // namespace basalt::host
