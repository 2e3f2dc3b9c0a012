// What a user reads off a screen.
#pragma once

#include <QAbstractItemView>
#include <QWidget>
#include <optional>
#include <string>

#include "host/steps/step.h"

namespace basalt::host {

// The text of a label, button, edit, combo box, spin edit, group or window; for one of our composed controls that of
// what it is made of. StepFailure for a control without a text.
[[nodiscard]] QString shownText(const QWidget& widget);

// The same of the control itself only; nullopt for one without a text.
[[nodiscard]] std::optional<QString> ownText(const QWidget& widget);

// The table of a grid, or the table itself. StepFailure for anything else.
[[nodiscard]] QAbstractItemView& requireTable(const std::string& name);
// A row, from 0, of a table. StepFailure when there are fewer rows.
[[nodiscard]] QModelIndex requireRow(QAbstractItemView& table, int row);
// A cell by row from 0 and column: its number among the visible columns from 0, its field name or its title.
[[nodiscard]] QModelIndex requireCell(const std::string& grid, int row, const std::string& column);

[[nodiscard]] bool hasState(const QWidget& widget, ObjectState state);
[[nodiscard]] std::string stateName(ObjectState state);

// Equal as a reader sees them: digits may be Persian, Arabic or Latin.
[[nodiscard]] bool readsAs(const QString& shown, const std::string& expected);

}  // namespace basalt::host
