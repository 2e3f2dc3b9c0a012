// What the user log is narrowed to. Beside the general search box: a part of the application and a span of days.
//
//   frame.Filter()    "([SoftwarePart] = 114) AND ([LogDate] >= N'1405/08/01')"
//
// Days are typed as 1405/08/01 or 14050801, digits in any script; a day that does not exist is marked, narrows nothing,
// and is told of.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "package/screens/controls.h"

namespace basalt::host {

class LogFilter final : public TSearchFrame {
public:
    explicit LogFilter(QWidget* parent = nullptr);

    // A part to choose, beside "all parts".
    void addPart(int part, const QString& title);

    void init() override;
    [[nodiscard]] std::string Filter() const override;
    // What a print says of it; empty when it narrows nothing.
    [[nodiscard]] QString narrowing() const;
    void Clear() override;
    void FocusFirst() override;

private:
    [[nodiscard]] QLineEdit* addDate(const char* objectName, const QString& title);
    void dateEdited(QLineEdit& edit);

    QComboBox* part_;
    QLineEdit* from_ = nullptr;
    QLineEdit* to_ = nullptr;
    QLabel* problem_;
};

}  // namespace basalt::host
