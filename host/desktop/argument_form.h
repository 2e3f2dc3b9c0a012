// A form made from a function's parameters: one input for each argument.
//
//   form.setParameters(entry.parameters);
//   CallArguments arguments = form.arguments();
#pragma once

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <vector>

#include "host/calls/arguments.h"

namespace basalt::host {

class ArgumentForm final : public QScrollArea {
public:
    explicit ArgumentForm(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    // Builds empty inputs for the parameters that a caller gives.
    void setParameters(const std::vector<FunctionParameter>& parameters);
    // What was typed, by parameter name. An input left empty is not given, unless it is a text. Digits of numbers are
    // made Latin.
    [[nodiscard]] CallArguments arguments() const;
    // The first input; false when there is none.
    bool focusFirst();
    // Leads Tab from there through the inputs; returns the last one, or `before` when there is none.
    QWidget* followInTabOrder(QWidget* before);

private:
    struct Input {
        FunctionParameter parameter;
        QLineEdit* edit = nullptr;
        QCheckBox* box = nullptr;
        QPlainTextEdit* text = nullptr;  // records and lists, as JSON
    };

    [[nodiscard]] static QWidget* makeEditor(Input& input);
    [[nodiscard]] static QWidget* editorOf(const Input& input);

    QFormLayout* layout_;
    std::vector<Input> inputs_;
};

}  // namespace basalt::host
