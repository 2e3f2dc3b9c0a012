// Notices that the user has typed or chosen something in a form.
//
//   InputWatch watch([this] { isSaved_ = false; });
//   watch.add(*formPanel);
//
// What the program itself puts into the inputs while pause() is on is not told.
#pragma once

#include <QSet>
#include <QWidget>
#include <functional>

namespace basalt::host {

class InputWatch {
public:
    explicit InputWatch(std::function<void()> onInput) : onInput_(std::move(onInput)) {}

    // Watches all inputs inside the widget; those that it knows already are not watched twice.
    void add(QWidget& form);

    class Pause {
    public:
        explicit Pause(InputWatch& watch) : watch_(watch) { ++watch_.paused_; }
        ~Pause() { --watch_.paused_; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        InputWatch& watch_;
    };

private:
    void tell() const {
        if (paused_ == 0) onInput_();
    }
    void watch(QWidget* input);

    std::function<void()> onInput_;
    QObject connections_;  // cuts all of them when the watch goes
    QSet<const QObject*> known_;
    int paused_ = 0;
};

}  // namespace basalt::host
