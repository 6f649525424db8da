// libFuzzer target for the CSV statement reader: the input is a bank's
// export, read with the shipped profiles (whichever fit its header), or
// with the first of them by the place of its columns when none fits.
#include "BankFuzzCheck.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    saldo::fuzz::checkStatementBytes(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
