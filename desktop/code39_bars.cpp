#include "desktop/code39_bars.h"

#include <memory>
#include <zint.h>

namespace kelvane {

std::vector<bool> code39_modules(std::string_view text) {
    const std::unique_ptr<zint_symbol, decltype(&ZBarcode_Delete)> symbol(ZBarcode_Create(),
                                                                          ZBarcode_Delete);
    if (!symbol || text.empty()) {
        return {};
    }
    symbol->symbology = BARCODE_CODE39;
    symbol->input_mode = DATA_MODE;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (ZBarcode_Encode(symbol.get(), bytes, static_cast<int>(text.size())) >= ZINT_ERROR) {
        return {};
    }
    std::vector<bool> modules;
    modules.reserve(static_cast<std::size_t>(symbol->width));
    for (int module = 0; module < symbol->width; ++module) {
        modules.push_back(((symbol->encoded_data[0][module / 8] >> (module % 8)) & 1) != 0);
    }
    return modules;
}

// 21202 is 2.12.2.
std::string barcode_library_version() {
    const int version = ZBarcode_Version();
    return std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
           std::to_string(version % 100);
}

}  // namespace kelvane
