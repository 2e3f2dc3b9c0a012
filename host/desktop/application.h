// The application object of the desktop: an error that no handler caught is shown, and the program lives on.
#pragma once

#include <QApplication>

namespace basalt::host {

class Application final : public QApplication {
public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    bool showing_ = false;
};

}  // namespace basalt::host
