// What list screens and editors have in common around their own controls: a title, panels from top to bottom, a row of
// buttons, and the keys that the captions of the buttons name.
#pragma once

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <functional>
#include <vector>

#include "host/screens/smart_button.h"

namespace basalt::host {

class ScreenFrame final : public QObject {
public:
    ScreenFrame(ScreenContext& context, QDialog& screen);

    // A place for controls. What the screen puts there without a layout of its own is laid out by finishLayout.
    [[nodiscard]] QWidget* addPanel(const char* objectName, int stretch);
    SmartButton* addButton(const std::string& objectName, const std::string& caption);
    // Puts all buttons that come from here on at the far end of the row.
    void addButtonGap();
    void addTool(QWidget* tool);  // beside the title
    void setTitle(const QString& title);
    [[nodiscard]] QString title() const { return title_->text(); }

    void finishLayout();
    // From now on the keys of the captions work, Enter and Escape included.
    void activateShortCuts();
    [[nodiscard]] const std::vector<SmartButton*>& buttons() const { return buttons_; }

    // Enter where no usable button bears that key. True when it has been dealt with.
    std::function<bool()> onEnter;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool clickKey(const QKeySequence& key);
    bool pressed(QKeyEvent& event);

    ScreenContext& context_;
    QDialog& screen_;
    QVBoxLayout* layout_;
    QHBoxLayout* header_;
    QHBoxLayout* footer_;
    QLabel* title_;
    int panels_ = 0;
    std::vector<QWidget*> bare_;
    std::vector<SmartButton*> buttons_;
    bool keysActive_ = false;
};

}  // namespace basalt::host
