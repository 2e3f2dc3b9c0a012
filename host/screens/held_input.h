// Input that arrives while the windows are only painted: keys are held back in their order and given to the window
// that waited, once events come again; clicks outside of the notice are dropped.
//
//   HeldInput held;
//   held.onEscape = [&] { cancelled = true; };
//   { const HeldInput::Turn turn(held, notice); QApplication::processEvents(); }
//   held.giveBack();                                          // where events come again
//
// Keys go to whatever has the focus in the window that waited, which may be another control by then. Where that window
// has gone, or another one stands over it, they are dropped: they were not meant for what it shows.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <functional>
#include <memory>

namespace basalt::host {

class HeldInput final : public QObject {
public:
    // As long as one is there, input is held. The notice takes clicks; it may be nullptr.
    class Turn {
    public:
        Turn(HeldInput& held, QWidget* notice);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        HeldInput& held_;
    };

    // Escape is never held: it is told at once.
    std::function<void()> onEscape;

    // The window whose keys are held from now on. What was held for another one is dropped.
    void waitFor(QWidget* window);
    // What was pressed so far was meant for what has been given up, all but the text that was being typed.
    void keepTypedText();
    void giveBack();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isOnNotice(QObject* watched, const QEvent& event) const;
    [[nodiscard]] QWidget* receiver() const;  // nullptr: there is none any more
    void dropWhenAnotherLoopRuns();

    std::deque<std::unique_ptr<QEvent>> events_;
    QPointer<QWidget> window_;
    QPointer<QWidget> notice_;
    bool inTurn_ = false;
    bool giving_ = false;
    bool dropAfterTurn_ = false;
};

}  // namespace basalt::host
