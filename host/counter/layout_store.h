// The rows of BarCodeFormul, for the host's layout screen.
#pragma once

#include <vector>

#include "ado/session.h"
#include "host/counter/barcode_layout.h"

namespace basalt::host {

class LayoutStore {
public:
    explicit LayoutStore(Session& session) : session_(session) {}

    // By length, prefix and number.
    [[nodiscard]] std::vector<BarcodeLayout> all();
    // Gives the number that the new layout gets; its own is not looked at.
    int add(const BarcodeLayout& layout);
    // Writes the columns that differ, so that what other programs stored in the others stays. False, with nothing
    // written, when there is no such layout any more.
    [[nodiscard]] bool change(const BarcodeLayout& from, const BarcodeLayout& to);
    void remove(int id);

private:
    Session& session_;
};

}  // namespace basalt::host
