// The per-user layout of one screen: columns, sort and window size, kept by the host.
#pragma once

#include <QJsonObject>
#include <string>

#include "host/screens/screen_context.h"
#include "package/screens/base_dock_frm.h"

namespace basalt::host {

class FormOption final : public TFormOption {
public:
    // Without a software part the layout is kept under the screen's class name.
    FormOption(ScreenContext& context, QDialog& screen) : context_(context), screen_(screen) {}

    void SetSoftwarePart(TComponentSoftwarePart part) override;

    // What was kept; empty when nothing was, or nothing that can be read. Errors of the database pass.
    [[nodiscard]] QJsonObject load();
    // Keeps the layout when it differs from what was kept, without a wait and without a word when the database does not
    // take it: a layout is worth neither, least of all over a screen that has closed.
    void saveQuietly(const QJsonObject& layout);

private:
    [[nodiscard]] std::string key() const;

    ScreenContext& context_;
    QDialog& screen_;
    std::string key_;
    std::string kept_;
};

}  // namespace basalt::host
