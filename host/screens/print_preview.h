// Pages before they are printed: looked at, turned, brought onto other paper, printed or kept as a PDF file.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>

#include "host/screens/form_option.h"
#include "host/screens/page_view.h"
#include "host/screens/screen_context.h"
#include "host/screens/screen_frame.h"

namespace basalt::host {

class PrintPreview final : public QDialog {
public:
    // Context and document are lent.
    PrintPreview(ScreenContext& context, PrintDocument& document, const QPageLayout& paper, QWidget* parent);

    // Whichever way it is left, the user finds it of the same size the next time.
    void done(int result) override;

private:
    void makeTools();
    [[nodiscard]] QToolButton* addTool(const char* objectName, const QString& title, const QKeySequence& key,
                                       const std::function<void()>& action);
    [[nodiscard]] QComboBox* addChoice(const char* objectName, const QString& title);
    void bind(const QKeySequence& key, const std::function<void()>& action);
    void takePaper();
    void takeSize(int index);
    void showPage();
    void showSize();
    void print();
    void showAgain(int page);
    void savePdf();

    ScreenContext& context_;
    PrintDocument& document_;
    FormOption option_;
    ScreenFrame* frame_;
    QHBoxLayout* tools_;
    QToolButton* previous_ = nullptr;
    QSpinBox* page_ = nullptr;
    QLabel* pages_ = nullptr;
    QToolButton* next_ = nullptr;
    QToolButton* smaller_ = nullptr;
    QComboBox* size_ = nullptr;
    QToolButton* larger_ = nullptr;
    QComboBox* paper_ = nullptr;
    QToolButton* landscape_ = nullptr;
    PageView* view_;
};

}  // namespace basalt::host
