// libFuzzer target for the binary ledger reader. Most inputs are given the
// bplist00 magic so the fuzzer spends its time past the first eight bytes; an
// input whose first byte is 0xFF goes in unchanged to reach the format dispatch.
#include "LedgerFuzzCheck.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (input.substr(0, 8) == "bplist00" || (size > 0 && data[0] == 0xFF)) {
        saldo::fuzz::checkLedgerBytes(input.substr(input.substr(0, 8) == "bplist00" ? 0 : 1));
        return 0;
    }
    std::string bytes = "bplist00";
    bytes.append(input);
    saldo::fuzz::checkLedgerBytes(bytes);
    return 0;
}
