// The layouts of scale barcodes: a list, the fields of one, and a barcode typed for trying, coloured by what is cut
// where.
#pragma once

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <functional>
#include <map>
#include <vector>

#include "host/counter/barcode_layout.h"
#include "host/counter/layout_store.h"
#include "host/desktop/desktop_context.h"
#include "host/desktop/shell_page.h"

namespace basalt::host {

// The barcode as rich text: each character coloured by its field, with a legend; text of the user is escaped.
[[nodiscard]] QString previewOf(const BarcodeLayout& layout, const QString& barcode);

class LayoutPage final : public ShellPage {
public:
    explicit LayoutPage(DesktopContext context, QWidget* parent = nullptr);

    void enter() override;
    [[nodiscard]] bool mayLeave() override;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // The list, the fields and the barcode for trying, side by side.
    void makeColumns(QBoxLayout& layout);
    void arrangeColumns();
    void makeFields(QFormLayout& form);
    void makePreview(QBoxLayout& layout);
    void makeButtons(QBoxLayout& layout);
    QPushButton* addButton(QBoxLayout& row, const char* objectName, const QString& title, const QKeySequence& key,
                           void (LayoutPage::*work)());
    QSpinBox* makeNumber(const QString& objectName, const QString& accessibleName, int BarcodeLayout::*field, int most);
    QSpinBox* addNumber(QFormLayout& form, const char* objectName, const QString& title, int BarcodeLayout::*field,
                        int most);
    void addPlace(QFormLayout& form, LayoutField field, const QString& name, const QString& title,
                  int BarcodeLayout::*start, int BarcodeLayout::*count);

    // Asks whether changes are to be stored before something, named in the user's words; before leaving if it is not.
    // False when the user goes back to them.
    [[nodiscard]] bool settleChanges(const std::vector<std::string>& before);
    void reload(int id);
    void choose();
    void show(const BarcodeLayout& layout);
    void edited();
    void refresh();
    // The name of the good that all barcodes of the layout stand for.
    void showGood();
    // How the barcode typed for trying goes with this layout and the others.
    [[nodiscard]] QString noteOn(const QString& sample) const;
    void save();
    // False when nothing was written: the user may not, or the layout lacks something; he has been told.
    bool write();
    [[nodiscard]] bool may(TPermission permission, bool tell = true);
    // What is hopeless is told and refused; what is doubtful may be meant, and the user says so.
    [[nodiscard]] bool mayWrite();
    // A text that is longer than what is stored of it is told; no character of it is dropped.
    [[nodiscard]] bool areShortEnough();
    // Where the problem is mended, when that is one place.
    void focusField(const LayoutProblem& problem);
    // Tells what kept a layout from being written, and shows what is there now.
    void tellNotWritten(LayoutOutcome outcome);
    // Into the user log, as a part of the open transaction.
    void log(TPermission permission, const BarcodeLayout& layout);
    void startNew();
    void remove();

    DesktopContext context_;
    LayoutStore store_;
    std::vector<BarcodeLayout> layouts_;
    BarcodeLayout edited_;
    BarcodeLayout stored_;
    bool showing_ = false;
    // As they were when the page was opened.
    struct Rights {
        bool insert = false;
        bool edit = false;
        bool remove = false;
    } rights_;
    // Each takes its input's value into the layout, or shows the layout's.
    std::vector<std::function<void(BarcodeLayout&)>> take_;
    std::vector<std::function<void(const BarcodeLayout&)>> fill_;
    std::map<LayoutField, QSpinBox*> counts_;
    QScrollArea* scroll_ = nullptr;
    QBoxLayout* rest_ = nullptr;  // the fields and the barcode for trying
    QListWidget* list_ = nullptr;
    QWidget* fields_ = nullptr;
    QLabel* readOnly_ = nullptr;
    QLabel* goodName_ = nullptr;
    int namedGood_ = -1;  // whose name is shown
    QLineEdit* title_ = nullptr;
    QLineEdit* prefix_ = nullptr;
    QLineEdit* sample_ = nullptr;
    QLabel* preview_ = nullptr;
    QLabel* problems_ = nullptr;
    QLabel* sampleNote_ = nullptr;
    QLabel* state_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* new_ = nullptr;
    QPushButton* remove_ = nullptr;
};

}  // namespace basalt::host
