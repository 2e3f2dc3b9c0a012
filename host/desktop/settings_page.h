// The company's settings, which hold for everybody, and the options of this workstation.
#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <functional>
#include <vector>

#include "host/desktop/desktop_context.h"
#include "host/desktop/setting_editor.h"
#include "host/desktop/shell_page.h"

namespace basalt::host {

class SettingsPage final : public ShellPage {
public:
    explicit SettingsPage(DesktopContext context, QWidget* parent = nullptr);

    // Shows what is stored.
    void enter() override;
    // Asks about unsaved changes.
    bool mayLeave() override;

    std::function<void()> OnSaved;

protected:
    // The panels stand side by side where there is room for both.
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeCompany(QBoxLayout& layout);
    void addLedgerNumbering(QBoxLayout& panel);
    void makeWorkstation(QBoxLayout& layout);
    void addQueryTimeout(QBoxLayout& panel);
    void makeFooter(QBoxLayout& layout);
    void load();
    // False when the user may not, or when something does not fit; the first such input has the focus then.
    [[nodiscard]] bool save();
    // False when somebody else has changed the same setting meanwhile; the user has been told and sees what there is.
    [[nodiscard]] bool saveCompany();
    void saveWorkstation();
    void edited();
    void setUnsaved(bool unsaved);

    DesktopContext context_;
    std::vector<SettingEditor*> editors_;
    QComboBox* ledgerNumbering_ = nullptr;
    QLineEdit* workstation_ = nullptr;
    QLabel* workstationProblem_ = nullptr;
    QCheckBox* persianDigits_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QBoxLayout* panels_ = nullptr;
    QSpinBox* fontSize_ = nullptr;
    QSpinBox* queryTimeout_ = nullptr;
    QLabel* state_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* undo_ = nullptr;
    bool unsaved_ = false;
};

}  // namespace basalt::host
