#pragma once
// Small helpers shared by the core and command-line tests: entry names of a
// list, a private temporary folder, whole files, report data and the output
// of a command.
#include "model/Einnahme.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace saldo::testing {

using Names = std::vector<std::string>;

inline Names namesOf(const EinnahmeList& list)
{
    Names names;
    for (const auto& e : list)
        names.push_back(e->name());
    return names;
}

// Whole file as bytes; fails the test when it cannot be read.
inline std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.good()) << "cannot read " << path;
    return { std::istreambuf_iterator<char>(in), {} };
}

// Path of a file in tests/data/report.
inline std::string reportData(const std::string& name)
{
    return std::string(SALDO_TEST_DATA_DIR) + "/report/" + name;
}

struct CommandRun {
    int status = -1;
    std::string out;
};

// Runs a shell command and collects its standard output and exit status.
inline CommandRun runCommand(const std::string& command)
{
    CommandRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return run;
    char buffer[8192];
    while (const std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe))
        run.out.append(buffer, n);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

// The names in a folder, sorted.
inline std::vector<std::string> namesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(folder))
        names.push_back(item.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A fixture with a fresh folder under /tmp, removed after the test.
class TempDirTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/saldo-test-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        dir = pattern;
    }
    void TearDown() override
    {
        if (!dir.empty())
            std::filesystem::remove_all(dir);
    }
    std::filesystem::path dir;
};

} // namespace saldo::testing
