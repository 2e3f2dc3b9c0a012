// The display that an application is about to open: what Qt says of it, and where Qt keeps what it needs for it.
//
// QuietDisplay keeps from the standard error what Qt repeats for every window on displays that lack something, such as
// the offscreen one: "This plugin does not support raise()". Everything else that Qt has to say goes where it went
// before. Where the application finds no display that it can use, Qt would abort the program; it ends with status 1 and
// a sentence instead.
//
//   const QuietDisplay quiet("basalt");
//   QApplication application(argc, argv);
#pragma once

#include <QtGlobal>
#include <filesystem>
#include <string>

namespace basalt::host {

// The folder of Qt's plugins for displays.
[[nodiscard]] std::filesystem::path platformPlugins();

// One at a time.
class QuietDisplay {
public:
    // `program` begins the sentence.
    explicit QuietDisplay(std::string program);
    ~QuietDisplay();
    QuietDisplay(const QuietDisplay&) = delete;
    QuietDisplay& operator=(const QuietDisplay&) = delete;
};

}  // namespace basalt::host
