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
    // Writes the layout; gives its number, which a new one (id 0) gets now.
    int save(const BarcodeLayout& layout);
    void remove(int id);

private:
    Session& session_;
};

}  // namespace basalt::host
