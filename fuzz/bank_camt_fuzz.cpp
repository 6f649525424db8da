// libFuzzer target for the camt.053 reader and the ZIP reader in front of it:
// the input is the statement file (XML, or a ZIP of XML files). Reading gives
// bookings or throws StatementError; whatever it gives becomes proposals.
#include "BankFuzzCheck.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    saldo::fuzz::checkStatementBytes(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
