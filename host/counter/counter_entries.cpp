#include "host/counter/counter_entries.h"

#include <QDialog>
#include <QVBoxLayout>

#include "host/counter/counter_page.h"
#include "host/counter/layout_page.h"
#include "host/screens/page_style.h"

namespace basalt::host {

namespace {

constexpr int kWidth = 1180;
constexpr int kHeight = 720;

// A page in a window. It closes when the page may be left.
class PageWindow final : public QDialog {
public:
    PageWindow(ShellPage* page, ScreenContext& handlers) : page_(page), handlers_(handlers) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(page);
        setStyleSheet(pageStyleSheet());
        resize(kWidth, kHeight);
        // Enter belongs to the inputs: a scan ends with it.
        for (auto* button : findChildren<QPushButton*>())
            button->setAutoDefault(false);
    }

    void reject() override {
        handlers_.guarded(this, [this] {
            if (page_->mayLeave()) QDialog::reject();
        });
    }

protected:
    void showEvent(QShowEvent* event) override {
        QDialog::showEvent(event);
        handlers_.guarded(this, [this] { page_->enter(); });
    }

private:
    ShellPage* page_;
    ScreenContext& handlers_;
};

EntryPoint described(const char* name, const char* title, const char* summary) {
    return {.name = name,
            .subsystem = "goods",
            .title = title,
            .summary = summary,
            .part = spGoods,
            .permission = prOpen,
            .parameters = {},
            .result = "",
            .run = {}};
}

template <class Page>
EntryPoint opening(EntryPoint entry, const char* window, ReferenceHost& host, const Registry& registry,
                   HostScreenServices& screens) {
    entry.run = [&host, &registry, &screens, window, title = entry.title](FunctionCall& /*call*/) {
        if (!host.HavePermission(host.UserInfo(), spGoods, prOpen, true, true, "")) return;
        PageWindow shown(new Page({host, registry, screens, screens.context()}), screens.context());
        shown.setObjectName(QString::fromLatin1(window));
        shown.setWindowTitle(QString::fromStdString(title));
        shown.exec();
        screens.context().rethrowUnshown();
    };
    return entry;
}

}  // namespace

EntryPoint counterEntry() {
    return described("Open_Counter", "پیشخوان فروش",
                     "Takes scans into an invoice, to try scales and scanners by hand.");
}

EntryPoint layoutsEntry() {
    return described("Open_BarcodeLayouts", "الگوهای بارکد",
                     "Shows and changes the layouts of scale barcodes, with a barcode to try them on.");
}

EntryPoint counterEntry(ReferenceHost& host, const Registry& registry, HostScreenServices& screens) {
    return opening<CounterPage>(counterEntry(), "Counter_FRM", host, registry, screens);
}

EntryPoint layoutsEntry(ReferenceHost& host, const Registry& registry, HostScreenServices& screens) {
    return opening<LayoutPage>(layoutsEntry(), "BarcodeLayouts_FRM", host, registry, screens);
}

}  // namespace basalt::host
