// The host's button: caption and key, and for save buttons a drop-down with the variants of saving.
#pragma once

#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <functional>
#include <optional>

#include "host/screens/inner_control.h"
#include "host/screens/screen_context.h"
#include "host/screens/short_cut.h"
#include "package/screens/controls.h"

namespace basalt::host {

class SmartButton final : public TSmartButton_VRO {
public:
    enum class Look { Plain, Primary, Danger };

    SmartButton(ScreenContext& context, const QString& objectName, QWidget* parent = nullptr);

    void SetCaption(const std::string& caption) override;
    [[nodiscard]] std::string Caption() const override { return caption_; }
    void Click() override;
    void SetSaveMode(int mode) override;

    [[nodiscard]] const QKeySequence& shortCut() const { return parts_.key; }
    [[nodiscard]] QString title() const { return parts_.title; }
    void setLook(Look look);
    // Asked before a click acts; it may change what is enabled, and false lets nothing happen.
    void setGate(std::function<bool()> gate);
    // Of all variants; the plain click then no longer calls OnClick.
    void setSaveHandler(std::function<void(TSaveKind)> handler);
    // A variant that makes no sense where the button is stands in no drop-down. Call it before SetSaveMode.
    void leaveOut(TSaveKind kind) { leftOut_ = kind; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void showCaption();
    void fillMenu();
    void pass(QMouseEvent* event);

    ScreenContext& context_;
    std::string caption_;
    CaptionParts parts_;
    InnerControl<QPushButton>* button_;
    QToolButton* variants_ = nullptr;
    QMenu* menu_ = nullptr;
    TSaveKind saveKind_ = TSaveKind::Save;
    std::optional<TSaveKind> leftOut_;
    std::function<bool()> gate_;
    std::function<void(TSaveKind)> onSave_;
};

}  // namespace basalt::host
