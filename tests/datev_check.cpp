// datev_check FILE...: reads booking batches back as the tax adviser's system
// would and prints every finding; exit 0 when there is none.
#include "core/exchange/DatevBatchChecker.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv)
{
    int status = argc > 1 ? 0 : 2;
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        const std::string bytes { std::istreambuf_iterator<char>(in), {} };
        const auto check = saldo::testing::checkDatevBatch(bytes);
        for (const std::string& finding : check.findings)
            std::printf("%s: %s\n", argv[i], finding.c_str());
        std::printf("%s: %zu Buchungen, %zu Befunde\n", argv[i], check.bookings.size(), check.findings.size());
        if (!in || !check.findings.empty())
            status = 1;
    }
    return status;
}
