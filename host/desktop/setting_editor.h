// One setting on the settings page: its title, an input that fits its kind, and what is wrong with what was typed.
//
//   SettingEditor editor(field);
//   editor.setValue("2");
//   editor.problem()      empty, or why the value cannot be stored
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "host/services/settings_store.h"
#include "host/services/unit_list.h"

namespace basalt::host {

// What a setting is called, without what its title says in brackets about the numbers: the inputs show that themselves.
[[nodiscard]] QString settingTitle(const SettingField& field);

// The width of an input at the usual font size.
constexpr int kSettingInputWidth = 360;

class SettingEditor final : public QWidget {
public:
    explicit SettingEditor(const SettingField& field, QWidget* parent = nullptr);

    [[nodiscard]] const SettingField& field() const { return field_; }
    // What a setting that is the code of something may be, beside 0 for none; it is chosen by name.
    void offer(const std::vector<Unit>& units);
    void setValue(const std::string& value);
    // As SettingsStore reads it; digits are made Latin in numbers.
    [[nodiscard]] std::string value() const;
    // Checks the value, shows what is wrong below the input and returns it.
    std::string check();
    void focusInput();

    std::function<void()> OnEdited;  // by the user

private:
    [[nodiscard]] QWidget* makeInput();
    [[nodiscard]] QComboBox* makeChoice();
    void edited();

    const SettingField& field_;
    QLineEdit* edit_ = nullptr;
    QComboBox* choice_ = nullptr;  // its items have their values with them
    QCheckBox* box_ = nullptr;
    QLabel* problem_ = nullptr;
};

}  // namespace basalt::host
