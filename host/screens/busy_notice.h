// Tells the user that a request to the database or the writing of a file takes long, and lets him give it up.
//
//   BusyNotice notice(host.session());      // for as long as there are screens
//
// Half a second into a request a small notice with the time so far and a cancel button lies over the window that waits.
// It never takes the focus: keys that are pressed meanwhile reach that window when the request is over (held_input.h),
// and only Escape or a click on the button gives the request up; Escape pressed twice does no more (escape_rest.h). The
// windows behind are painted but take no input. It goes away by itself when the request is over. A session that cannot
// be interrupted shows none. While the notice is up no timers run on the platforms where they can be held back, because
// whoever they belong to might use the session; where they do run, those that would use it ask requestRuns first.
#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <functional>

#include "ado/progress.h"
#include "ado/session.h"
#include "host/screens/held_input.h"

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

    // A request has lent the windows a moment to be painted; whatever is told of it now must not use the session.
    [[nodiscard]] bool requestRuns() const { return inTurn_; }
    // Told true before a request first lends the windows a moment, and false once it is over.
    std::function<void(bool)> onRuns;

private:
    // What the notice says; made only when it is shown.
    struct Text {
        const char* title;
        std::function<QString()> text;
    };

    [[nodiscard]] bool goOn(const Text& text);
    void begin();
    void show(const Text& text);
    void make();
    void place();
    void giveUp();
    void goWhenOver();
    void go();
    void tell(bool runs);

    Session& session_;
    InterruptibleSession* requests_;
    HeldInput held_;
    QPointer<QWidget> waiting_;  // the window over which the notice lies
    QPointer<QFrame> notice_;    // while it shows; the text and the button go with it
    QLabel* text_ = nullptr;
    QWidget* cancel_ = nullptr;
    QElapsedTimer began_;
    QElapsedTimer asked_;    // since the last question of the request
    QElapsedTimer painted_;  // since the windows were last given their turn
    int patience_;
    bool cancelled_ = false;
    bool inTurn_ = false;   // the windows have theirs
    bool leaving_ = false;  // go() is on its way
    bool told_ = false;     // that a request runs
    bool escaped_ = false;  // Escape was pressed at the notice
};

}  // namespace basalt::host
