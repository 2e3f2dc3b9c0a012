// A counter to try scales and scanners by hand: scans become lines of an invoice.
//
// A scanner is a keyboard that types fast and ends with Enter; what is typed while the grid has the focus goes to the
// scan field too. Everything about goods and barcodes is asked of the module's functions.
#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <functional>
#include <optional>
#include <set>

#include "host/counter/counter_scanner.h"
#include "host/counter/person_input.h"
#include "host/counter/scan_burst.h"
#include "host/desktop/desktop_context.h"
#include "host/desktop/shell_page.h"
#include "host/screens/elided_label.h"

namespace basalt::host {

class CounterPage final : public ShellPage {
public:
    explicit CounterPage(DesktopContext context, QWidget* parent = nullptr);
    ~CounterPage() override;

    // Makes one tone; where the sound is wanted it is called once for what went well, and again after a moment for what
    // did not. The workstation's beep until it is set; it must not be empty.
    std::function<void()> onTone;

    void enter() override;
    // Asks about an invoice that is not saved; without it the invoice is forgotten.
    [[nodiscard]] bool mayLeave() override;

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeScanRow(QBoxLayout& layout);
    void makeInvoice(QBoxLayout& layout);
    void makeFooter(QBoxLayout& layout);
    QPushButton* addButton(QLayout& row, const char* objectName, const QString& title, const QKeySequence& key,
                           void (CounterPage::*work)());

    void scan();
    // before: what was done just before, which is told together with the scan. ifRefused: what is told besides when
    // nothing came of it.
    void scan(const QString& typed, const ScanReport& before = {ScanMood::Added, {}}, const QString& ifRefused = {});
    // Whether the key press ends a scan that has gone into the open list of a combo box; it is scanned then, and the
    // choice stays what it was.
    bool endsScanIntoList(QObject* watched, QEvent& event);
    void readStores();
    void save();
    // False when the invoice is still there; what kept it is told.
    bool write();
    // What keeps an invoice from being saved before its stock is looked at; told, and false, when something does.
    bool isReady();
    // Checks the stock and posts the sale; the document's number, or nullopt when it was not posted, which is told.
    std::optional<int> post();
    // Runs the work; when it fails the text stands instead of the result of what was done before.
    template <class Work>
    auto orReport(const QString& text, Work work);
    // As the company's setting says, and who may change that may choose for the invoice.
    void showPolicy();
    // False, and told, for a code that nobody has; 0 is nobody. Shows whose code it is.
    bool personIsKnown();
    // The name of the person whose code is there; none while it is being typed and for nobody.
    void showPerson();
    // Lines have the price of whoever was named when they were scanned. When that is not the person of now and the
    // prices differ, the user is asked, once for each such person, whether they are to be taken anew.
    void offerPrices();
    // The amount of the chosen line, when it is of pieces.
    void changeAmount();
    void tare();
    void sendToScale();
    void reportNotSent(int sent, int asked, const std::string& program, const StartResult& result);
    void removeLine();
    void startNew();
    void clearInvoice();
    // No lines, and no sum of prices alone.
    [[nodiscard]] bool isEmpty();
    // Asks what becomes of an invoice that is not saved before what is named; false when it stays.
    [[nodiscard]] bool mayForget(const char* before);

    void showResult(const QString& mood, const QString& text);
    // In text, colour and, when it is wanted, sound.
    void report(ScanMood mood, const QString& text);
    // With the line at that place chosen, or the last; without a place the choice stays where it is. While there are
    // lines, one at least is chosen: what acts on lines acts on what is seen to be chosen.
    void showLines(std::optional<int> chosen = std::nullopt);
    // That line alone, and in sight; the last for a place behind it, and for none (-1).
    void choose(int row);
    // The one that is chosen; nullopt, and told, when it is not one.
    [[nodiscard]] std::optional<std::size_t> theLine();
    // As it is said, counted from 1.
    [[nodiscard]] QString placeOf(int row) const;
    // By their place in the invoice.
    [[nodiscard]] std::set<int> chosenLines() const;
    [[nodiscard]] QString chosenCodes() const;
    // The names of the chosen goods that are none of these, each once.
    [[nodiscard]] QStringList chosenBut(std::set<int> goods) const;
    [[nodiscard]] int store() const;

    DesktopContext context_;
    ModuleCalls calls_;
    CounterInvoice invoice_;
    CounterScanner scanner_;
    int lastScanned_ = -1;  // the place of the line that the last scan alone has brought; -1 for none
    QLineEdit* scan_ = nullptr;
    QPushButton* removing_ = nullptr;
    QCheckBox* sound_ = nullptr;
    PersonInput* person_ = nullptr;
    ScanBurst intoList_{kShortestScan, kShortestBarcode - 1};
    ElidedLabel* personName_ = nullptr;
    QComboBox* store_ = nullptr;
    QComboBox* policy_ = nullptr;
    QComboBox* scaleType_ = nullptr;
    QLabel* result_ = nullptr;
    QLabel* total_ = nullptr;
    QLabel* priceSum_ = nullptr;
    QTableWidget* grid_ = nullptr;
    QProgressBar* progress_ = nullptr;
};

}  // namespace basalt::host
