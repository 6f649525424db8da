#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace saldo {

// A small file another program made (a bank statement, a bank profile, a
// rules file), read whole into memory. Only a regular file is read: it is
// opened without waiting (a named pipe would otherwise wait for a writer and
// hold the window meanwhile), a directory, pipe or device is refused, and so
// is a file larger than `largest` bytes, before a byte of it is read, or one
// that grows beyond that while it is read.
class SmallFile {
public:
    enum class Fault { CannotOpen, NotRegular, TooLarge, CannotRead };
    struct Outcome {
        std::string bytes;
        std::optional<Fault> fault;
        int error = 0; // the system's error number of CannotOpen and CannotRead
    };
    static Outcome read(const std::string& path, std::uint64_t largest);
};

} // namespace saldo
