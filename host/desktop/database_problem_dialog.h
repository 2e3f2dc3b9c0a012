// Tells that the database cannot be opened, and asks what to do.
//
//   DatabaseProblemDialog dialog(describeProblem(error), error.what(), url.display());
//   dialog.exec();
//   switch (dialog.choice()) ...
#pragma once

#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>
#include <vector>

#include "host/desktop/database_start.h"

namespace basalt::host {

class DatabaseProblemDialog final : public QDialog {
public:
    enum class Choice { Exit, Retry, ChooseFile, CreateDemo };

    // `detail` is the technical message, shown on demand; `location` names the database.
    DatabaseProblemDialog(const DatabaseProblem& problem, const QString& detail, const QString& location,
                          QWidget* parent = nullptr);

    // Exit until the user has chosen.
    [[nodiscard]] Choice choice() const { return choice_; }

private:
    void addTexts(QVBoxLayout& layout, const DatabaseProblem& problem, const QString& location);
    void addDetail(QVBoxLayout& layout, const QString& detail);
    [[nodiscard]] QWidget* addButtons(QVBoxLayout& layout);

    Choice choice_ = Choice::Exit;
    std::vector<QLabel*> wrapped_;
};

}  // namespace basalt::host
