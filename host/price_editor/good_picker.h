// Asks for one good: a search box over a list that narrows while typing, the good that was most likely meant first and
// chosen (good_search.h). Where nothing is found it says so, and how to see all goods again. A good is taken only from
// a list that was found for the text that shows.
//
//   GoodPicker picker(context, window);
//   if (picker.exec() == QDialog::Accepted) edit(picker.goodCode());
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>

#include "host/screens/screen_context.h"
#include "host/screens/typing_pause.h"

namespace basalt::host {

class GoodPicker final : public QDialog {
public:
    GoodPicker(ScreenContext& context, QWidget* parent);

    [[nodiscard]] int goodCode() const;  // of the current row; 0 when there is none

    void accept() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeNotice();
    void search();
    void clearSearch();
    // The list is that of the text. False when it could not be had, which the user was shown.
    [[nodiscard]] bool goodsAreFound();
    void take(int code);
    void step(int rows);

    ScreenContext& context_;
    QLineEdit* search_;
    QString foundFor_;  // the text whose goods the list shows
    TypingPause pause_;
    QStackedWidget* found_;  // the goods, or the notice that there are none
    QListWidget* goods_;
    QLabel* notice_;
    QPushButton* clear_;
    QLabel* count_;
    QPushButton* accept_;
};

}  // namespace basalt::host
