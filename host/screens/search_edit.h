// The edit box of a search frame: the input that an item of the frame accepts.
#pragma once

#include <QLineEdit>

#include "host/screens/inner_control.h"
#include "package/screens/controls.h"

namespace basalt::host {

class SearchEdit final : public InnerControl<QLineEdit> {
public:
    SearchEdit(const QString& objectName, QWidget* parent);

    // Digits and amounts take Persian, Arabic and ASCII digits; text that the new type does not take is removed.
    void setDataType(TSearchDataType type);
    // Shows that the text is not yet what is asked for, and that the list does not heed it.
    void setUnfinished(bool unfinished);
    [[nodiscard]] bool isUnfinished() const { return unfinished_; }

private:
    bool unfinished_ = false;
};

}  // namespace basalt::host
