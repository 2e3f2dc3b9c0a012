#include "host/price_editor/price_editor.h"

#include <QApplication>

#include "host/price_editor/good_picker.h"
#include "host/price_editor/price_editor_frm.h"
#include "host/services/sql_access.h"
#include "package/services.h"

namespace basalt::host {
namespace {

void openPriceEditor(ScreenContext& context, const Registry& registry, int goodCode) {
    ReferenceHost& host = context.host();
    // The base of editors finds its host here as it does within the module.
    const AttachedHost attached(host);
    if (!host.HavePermission(host.UserInfo(), spGoods, prEdit, true, true, "")) return;
    if (goodCode != 0) {
        if (rowsOf(host.session(), "SELECT Code FROM dbo.GoodInf WHERE Code = ?", {std::int64_t{goodCode}})
                .rowCount() == 0) {
            host.Messages().show(
                {.operation = "MsgNoSuchGood", .kind = MessageKind::Error, .arguments = {std::to_string(goodCode)}});
            return;
        }
        (void)CreateEditor<PriceEditor>(host, registry, goodCode)->ShowModal();
        return;
    }
    // One good after another, until the user has had enough of it.
    GoodPicker picker(context, QApplication::activeWindow());
    while (picker.exec() == QDialog::Accepted)
        (void)CreateEditor<PriceEditor>(host, registry, picker.goodCode())->ShowModal();
}

}  // namespace

// It changes prices: who may only look at goods is refused before he has picked one.
EntryPoint priceEditorEntry() {
    return {.name = "Open_PriceEditor",
            .subsystem = "costlevel",
            .title = "قیمت‌ها و تخفیف‌های کالا",
            .summary = "Shows and changes one good's prices and discounts by level; 0 asks for the good.",
            .part = spGoods,
            .permission = prEdit,
            .parameters = {in("GoodCode", "integer")},
            .result = "",
            .run = {}};
}

EntryPoint priceEditorEntry(ScreenContext& context, const Registry& registry) {
    EntryPoint entry = priceEditorEntry();
    entry.run = [&context, &registry](FunctionCall& call) {
        openPriceEditor(context, registry, call.integer("GoodCode"));
    };
    return entry;
}

}  // namespace basalt::host
