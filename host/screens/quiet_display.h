// Keeps from the standard error what Qt repeats for every window on displays that lack something, such as the offscreen
// one: "This plugin does not support raise()". Everything else that Qt has to say goes where it went before.
//
//   const QuietDisplay quiet;
//   QApplication application(argc, argv);
#pragma once

#include <QtGlobal>

namespace basalt::host {

// One at a time.
class QuietDisplay {
public:
    QuietDisplay();
    ~QuietDisplay();
    QuietDisplay(const QuietDisplay&) = delete;
    QuietDisplay& operator=(const QuietDisplay&) = delete;
};

}  // namespace basalt::host
