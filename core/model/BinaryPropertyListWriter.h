#pragma once

#include "model/Einnahme.h"
#include "model/LedgerEntryPath.h"
#include "model/SnapshotGate.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Encodes an entry list as a binary property list (bplist00): a root array of
// entry dictionaries with all twelve keys, split bookings as nested arrays.
// The twelve key strings and the two booleans are written once and referenced
// from every dictionary; equal strings and equal reals are written once too
// (a ledger repeats its kinds, categories and rates on every line), dates and
// containers are written where their entry stands, never shared. Strings are ASCII when they are pure ASCII, else
// big-endian UTF-16; amounts and rates are 4-byte reals, dates 8-byte. Object
// references and offsets take the fewest bytes that can hold them. Fails as a
// whole with LedgerFileError (text that is not UTF-8, split bookings nested
// deeper than the readers accept); never drops an entry. Given a gate, it
// reads the entries as a worker reads a snapshot (see SnapshotGate).
class BinaryPropertyListWriter {
public:
    static std::string write(const EinnahmeList& entries, const SnapshotGate* gate = nullptr);

private:
    BinaryPropertyListWriter(std::uint64_t objectCount, const SnapshotGate* gate);

    // The values to write of an entry: its own, or those the gate kept.
    const Einnahme& at(const Einnahme& entry) const { return gate_ ? gate_->values(entry) : entry; }
    // Under a gate, the lock of the current batch of top-level entries is
    // given up and taken again every so many entries, so that the main thread
    // never waits long to change one.
    static constexpr std::size_t kBatch = 4096;
    void nextBatch(std::unique_lock<std::mutex>& lock, std::size_t i) const
    {
        if (gate_ && i % kBatch == 0 && i != 0) {
            lock.unlock();
            lock.lock();
        }
    }

    std::uint64_t countObjects(const EinnahmeList& entries, std::size_t depth, std::unique_lock<std::mutex>* batch);
    // The hashes of an entry's eight shared values, in the order they are coded.
    struct ValueHashes {
        std::uint64_t values[8];
    };
    static ValueHashes hashesOf(const Einnahme& entry);
    std::uint64_t writeEntry(const Einnahme& entry, const ValueHashes& hashes);
    std::uint64_t writeArray(const std::vector<std::uint64_t>& refs);
    void writeString(std::string_view text, const char* key);
    void writeAsciiString(std::string_view text);
    void writeLengthMarker(std::uint8_t type, std::uint64_t length);
    void writeRef(std::uint64_t ref);
    void writeBigEndian(std::uint64_t value, unsigned bytes);
    std::uint64_t beginObject();
    // Ends the value object begun at `start`, whose value has the hash given:
    // when an equal value was written before, the new bytes are dropped and
    // the earlier object is returned.
    std::uint64_t shareValue(std::size_t start, std::uint64_t hash);
    // Ask for the table slots of an entry's values, and for the coded bytes
    // of the values found there, ahead of their use.
    void prefetchSlots(const ValueHashes& hashes) const;
    void prefetchValues(const ValueHashes& hashes) const;
    void finish(std::uint64_t topObject);
    void narrowReferences(unsigned refSize);

    const SnapshotGate* gate_;
    std::string out_;
    std::vector<std::uint64_t> offsets_;
    std::uint64_t objectCount_;
    unsigned refSize_;
    // Open-addressing table of the value objects written so far: the low 32
    // bits of the value's hash, the object + 1 (0 marks an empty slot) and
    // where its bytes start.
    struct SharedSlot {
        std::uint32_t hash = 0;
        std::uint32_t object = 0;
        std::uint64_t offset = 0;
    };
    std::vector<SharedSlot> shared_;
    std::size_t sharedCount_ = 0;
    std::string utf16_; // scratch for non-ASCII strings
    std::vector<std::vector<std::uint64_t>> childRefs_; // per nesting level
    LedgerEntryPath path_;
};

} // namespace saldo
