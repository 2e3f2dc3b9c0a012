// The input of a person's code, which knows a scan when it gets one: a scanner types into whatever has the focus.
//
//   person->onScan = [this](const QString& typed) { ... };           // the code is what it was before
//   person->onTooLong = [this](const QString& typed) { ... };        // the same
#pragma once

#include <functional>

#include "host/counter/scan_burst.h"
#include "host/screens/persian_inputs.h"

namespace basalt::host {

class PersonInput final : public PersianSpinBox {
public:
    // Codes from 0 (nobody) to most.
    explicit PersonInput(int most);

    // Characters that came as fast as a scanner types them, up to Enter.
    std::function<void(const QString& typed)> onScan;
    // Whether a text is a barcode that means something.
    std::function<bool(const QString& text)> knowsScan;
    // More digits than a code has, and no barcode either. They are taken whole or not at all.
    std::function<void(const QString& typed)> onTooLong;

protected:
    [[nodiscard]] QValidator::State validate(QString& text, int& cursor) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] bool isTooLong() const;
    // The code that this text says; the one that stands when it is none.
    [[nodiscard]] int codeOf(const QString& text) const;
    void refuse();

    ScanBurst burst_;
    // The code that stands when what is being typed is none.
    int settled_ = 0;
};

}  // namespace basalt::host
