// libFuzzer target for the XML ledger reader: the input is the document.
#include "LedgerFuzzCheck.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    saldo::fuzz::checkLedgerBytes(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
