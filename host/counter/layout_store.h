// The rows of BarCodeFormul, for the host's layout screen.
#pragma once

#include <optional>
#include <vector>

#include "ado/session.h"
#include "host/counter/barcode_layout.h"

namespace basalt::host {

enum class LayoutOutcome {
    Written,
    Changed,  // nothing is written: another client has meanwhile changed what this one is about to
    Gone,     // nothing is written: there is no such layout any more
};

class LayoutStore {
public:
    explicit LayoutStore(Session& session) : session_(session) {}

    // By length, prefix and number.
    [[nodiscard]] std::vector<BarcodeLayout> all();
    // The one by which the module reads that barcode, or finds that it does not fit to the letter: the server's first
    // row, as the module asks for it.
    [[nodiscard]] std::optional<BarcodeLayout> firstFor(const QString& barcode);
    // Gives the number that the new layout gets; its own is not looked at.
    int add(const BarcodeLayout& layout);
    // Writes the columns that differ, so that what other programs stored in the others stays. from is the layout as it
    // was read; a column that is to be written must still hold what it held then.
    [[nodiscard]] LayoutOutcome change(const BarcodeLayout& from, const BarcodeLayout& to);
    // read is the layout as it was read; it goes only when nothing of it has changed.
    [[nodiscard]] LayoutOutcome remove(const BarcodeLayout& read);

private:
    // As it is now, for nobody else to change while the transaction lasts.
    [[nodiscard]] std::optional<BarcodeLayout> held(int id);

    Session& session_;
};

}  // namespace basalt::host
