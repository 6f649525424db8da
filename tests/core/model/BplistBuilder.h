#pragma once
// Helpers shared by the reader tests: the reason a file is refused with, and a
// builder of binary property lists.
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace saldo::test {

// The twelve keys of an entry, written out here rather than taken from the model.
inline const char* const kEntryKeys[12] = { "name", "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU",
    "brutto", "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions" };

// The reason a file is refused with, or "accepted N entries".
inline std::string refusal(const std::string& bytes)
{
    try {
        return "accepted " + std::to_string(LedgerFile::decode(bytes).size()) + " entries";
    } catch (const LedgerFileError& e) {
        return e.what();
    }
}

#define EXPECT_REFUSED(bytes, reason) EXPECT_PRED_FORMAT2(::testing::IsSubstring, reason, ::saldo::test::refusal(bytes))

// Levels of split bookings down the first child of each entry.
inline int depthOf(const Einnahme* e)
{
    int levels = 0;
    for (; e; e = e->childTransactions().empty() ? nullptr : e->childTransactions()[0].get())
        ++levels;
    return levels;
}

inline std::string bigEndian(std::uint64_t value, unsigned bytes)
{
    std::string out;
    for (unsigned i = 0; i < bytes; ++i)
        out.push_back(static_cast<char>(value >> (8 * (bytes - 1 - i))));
    return out;
}

// Trailer fields to put in place of the true ones.
struct BplistTrailer {
    std::optional<std::uint64_t> objectCount = {}, topObject = {}, offsetTable = {};
    std::optional<unsigned> offsetSize = {}, refSize = {};
};

// Assembles binary property lists object by object, so that a test can put
// any marker, reference or trailer field where it likes. Object references
// are `refSize` bytes wide, offsets `offsetSize` bytes.
class BplistBuilder {
public:
    using Values = std::map<std::string, std::optional<std::size_t>>;
    unsigned refSize = 1;
    unsigned offsetSize = 2;

    std::size_t raw(std::string bytes)
    {
        objects_.push_back(std::move(bytes));
        return objects_.size() - 1;
    }
    std::size_t ascii(const std::string& text) { return raw(marker(0x50, text.size()) + text); }
    std::size_t utf16(const std::vector<std::uint16_t>& units)
    {
        std::string bytes = marker(0x60, units.size());
        for (const auto u : units)
            bytes += bigEndian(u, 2);
        return raw(bytes);
    }
    std::size_t real4(float v) { return raw('\x22' + bigEndian(std::bit_cast<std::uint32_t>(v), 4)); }
    std::size_t real8(double v, char type = '\x23')
    {
        return raw(type + bigEndian(std::bit_cast<std::uint64_t>(v), 8));
    }
    std::size_t integer(std::uint64_t v, unsigned bytes)
    {
        return raw(static_cast<char>(0x10 | std::countr_zero(bytes)) + bigEndian(v, bytes));
    }
    std::size_t array(const std::vector<std::size_t>& refs) { return raw(marker(0xA0, refs.size()) + refs_(refs)); }
    std::size_t dict(const std::vector<std::size_t>& keys, const std::vector<std::size_t>& values)
    {
        return raw(marker(0xD0, keys.size()) + refs_(keys) + refs_(values));
    }
    // Replaces an object's bytes after the fact (to point an array at itself).
    void replace(std::size_t object, std::string bytes) { objects_[object] = std::move(bytes); }
    std::string ref(std::size_t object) const { return bigEndian(object, refSize); }

    // A complete entry dictionary. `values` replaces the value of a key; a key
    // mapped to nullopt is left out; `extra` adds keys after the twelve.
    std::size_t entry(const Values& values = {}, const std::vector<std::pair<std::string, std::size_t>>& extra = {})
    {
        std::vector<std::size_t> keys, vals;
        for (const char* name : kEntryKeys) {
            const auto found = values.find(name);
            if (found == values.end())
                keys.push_back(key(name)), vals.push_back(defaultValue(name));
            else if (found->second)
                keys.push_back(key(name)), vals.push_back(*found->second);
        }
        for (const auto& [name, value] : extra)
            keys.push_back(key(name)), vals.push_back(value);
        return dict(keys, vals);
    }

    std::string build(std::size_t top, const BplistTrailer& t = {}) const
    {
        std::string out = "bplist00", table;
        for (const auto& object : objects_) {
            table += bigEndian(out.size(), offsetSize);
            out += object;
        }
        const std::uint64_t tableAt = out.size();
        out += table + std::string(6, '\0');
        out.push_back(static_cast<char>(t.offsetSize.value_or(offsetSize)));
        out.push_back(static_cast<char>(t.refSize.value_or(refSize)));
        out += bigEndian(t.objectCount.value_or(objects_.size()), 8);
        out += bigEndian(t.topObject.value_or(top), 8);
        return out + bigEndian(t.offsetTable.value_or(tableAt), 8);
    }

    // The object of a key string, made once per key.
    std::size_t key(const std::string& name)
    {
        const auto found = keys_.find(name);
        return found != keys_.end() ? found->second : keys_[name] = ascii(name);
    }

    std::size_t defaultValue(const std::string& name)
    {
        if (name == "innergemeinschaftlicherErwerb" || name == "isNonEU")
            return raw("\x08");
        if (name == "brutto" || name == "steuersatz")
            return real4(name == "brutto" ? 119.0f : 19.0f);
        if (name == "datum")
            return real8(700000000.5, '\x33');
        if (name == "childTransactions")
            return array({});
        return ascii(name == "name" ? "Miete" : name == "art" ? "Einnahme" : "");
    }

private:
    static std::string marker(unsigned type, std::size_t length)
    {
        const std::string head(1, static_cast<char>(type | std::min<std::size_t>(length, 15)));
        return length < 15 ? head : head + "\x11" + bigEndian(length, 2);
    }
    std::string refs_(const std::vector<std::size_t>& objects) const
    {
        std::string bytes;
        for (const auto o : objects)
            bytes += ref(o);
        return bytes;
    }

    std::vector<std::string> objects_;
    std::map<std::string, std::size_t> keys_;
};

} // namespace saldo::test
