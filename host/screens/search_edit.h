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
};

}  // namespace basalt::host
