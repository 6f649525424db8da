#pragma once
// Statement files written by the tests from the banks' documented layouts:
// camt.053 messages of each version, ZIP files (also broken and hostile
// ones) and text in the single-byte encodings of bank CSV exports.
#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace saldo::testing {

// One entry (Ntry) of a camt.053 statement.
struct CamtEntry {
    std::string amount = "100.00";
    std::string indicator = "CRDT";
    std::string status = "BOOK";
    std::string bookingDate = "<Dt>2025-11-03</Dt>";
    std::string details; // the NtryDtls content (TxDtls elements)
    std::string extra; // further elements (RvslInd, AcctSvcrRef, AddtlNtryInf)
    std::string currency = "EUR";
};

// A TxDtls with a party, remittance lines and an end-to-end id. `version`
// "08" nests the name as Pty/Nm.
inline std::string camtDetail(const std::string& version, const std::string& role, const std::string& name,
    const std::string& iban, const std::vector<std::string>& lines, const std::string& endToEnd = "NOTPROVIDED",
    const std::string& amount = "")
{
    std::string out = "<TxDtls><Refs><EndToEndId>" + endToEnd + "</EndToEndId></Refs>";
    if (!amount.empty())
        out += "<AmtDtls><TxAmt><Amt Ccy=\"EUR\">" + amount + "</Amt></TxAmt></AmtDtls>";
    const std::string named = version == "08" ? "<Pty><Nm>" + name + "</Nm></Pty>" : "<Nm>" + name + "</Nm>";
    out += "<RltdPties><" + role + ">" + named + "</" + role + "><" + role + "Acct><Id><IBAN>" + iban + "</IBAN></Id></"
        + role + "Acct></RltdPties><RmtInf>";
    for (const std::string& line : lines)
        out += "<Ustrd>" + line + "</Ustrd>";
    return out + "</RmtInf></TxDtls>";
}

// A camt.053 message of the given version ("02", "04", "08") with one
// statement per list of entries.
inline std::string camt(const std::string& version, const std::vector<std::vector<CamtEntry>>& statements,
    const std::string& accountCurrency = "EUR")
{
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document "
                      "xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001."
        + version + "\"><BkToCstmrStmt><GrpHdr><MsgId>1</MsgId></GrpHdr>";
    int number = 0;
    for (const auto& entries : statements) {
        out += "<Stmt><Id>" + std::to_string(++number) + "</Id><Acct><Id><IBAN>DE02120300000000202051</IBAN></Id><Ccy>"
            + accountCurrency + "</Ccy></Acct>";
        for (const CamtEntry& e : entries) {
            const std::string status = version == "08" ? "<Sts><Cd>" + e.status + "</Cd></Sts>" : "<Sts>" + e.status + "</Sts>";
            out += "<Ntry><Amt Ccy=\"" + e.currency + "\">" + e.amount + "</Amt><CdtDbtInd>" + e.indicator + "</CdtDbtInd>"
                + status + "<BookgDt>" + e.bookingDate + "</BookgDt><ValDt><Dt>2025-11-04</Dt></ValDt>" + e.extra
                + (e.details.empty() ? "" : "<NtryDtls>" + e.details + "</NtryDtls>") + "</Ntry>";
        }
        out += "</Stmt>";
    }
    return out + "</BkToCstmrStmt></Document>\n";
}

// A member of a ZIP file to write; the sizes it declares may lie.
struct ZipMember {
    std::string name;
    std::string bytes;
    bool deflate = true;
    long long declaredSize = -1; // -1: the true size
};

inline void put16(std::string& out, std::uint32_t v)
{
    out += static_cast<char>(v & 0xFF);
    out += static_cast<char>((v >> 8) & 0xFF);
}
inline void put32(std::string& out, std::uint32_t v)
{
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

inline std::string rawDeflate(const std::string& bytes)
{
    z_stream stream {};
    deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

inline std::string zip(const std::vector<ZipMember>& members)
{
    std::string out, directory;
    for (const ZipMember& m : members) {
        const std::string packed = m.deflate ? rawDeflate(m.bytes) : m.bytes;
        const auto crc = static_cast<std::uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(m.bytes.data()), static_cast<uInt>(m.bytes.size())));
        const auto size = static_cast<std::uint32_t>(m.declaredSize < 0 ? m.bytes.size() : m.declaredSize);
        const auto offset = static_cast<std::uint32_t>(out.size());
        const std::uint32_t method = m.deflate ? 8 : 0;
        put32(out, 0x04034b50);
        for (std::uint32_t v : { 20u, 0u, method, 0u, 0u })
            put16(out, v);
        put32(out, crc);
        put32(out, static_cast<std::uint32_t>(packed.size()));
        put32(out, size);
        put16(out, static_cast<std::uint32_t>(m.name.size()));
        put16(out, 0);
        out += m.name + packed;
        put32(directory, 0x02014b50);
        for (std::uint32_t v : { 20u, 20u, 0u, method, 0u, 0u })
            put16(directory, v);
        put32(directory, crc);
        put32(directory, static_cast<std::uint32_t>(packed.size()));
        put32(directory, size);
        put16(directory, static_cast<std::uint32_t>(m.name.size()));
        for (std::uint32_t v : { 0u, 0u, 0u, 0u })
            put16(directory, v);
        put32(directory, 0);
        put32(directory, offset);
        directory += m.name;
    }
    const auto directoryAt = static_cast<std::uint32_t>(out.size());
    out += directory;
    put32(out, 0x06054b50);
    put16(out, 0);
    put16(out, 0);
    put16(out, static_cast<std::uint32_t>(members.size()));
    put16(out, static_cast<std::uint32_t>(members.size()));
    put32(out, static_cast<std::uint32_t>(directory.size()));
    put32(out, directoryAt);
    put16(out, 0);
    return out;
}

// UTF-8 text in Latin-1, or in Windows-1252 (the euro sign as 0x80).
inline std::string singleByte(const std::string& utf8, bool windows1252 = false)
{
    std::string out;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (windows1252 && utf8.compare(i, 3, "\xE2\x82\xAC") == 0) {
            out += '\x80';
            i += 2;
        } else {
            out += static_cast<char>(((c & 0x1F) << 6) | (static_cast<unsigned char>(utf8[i + 1]) & 0x3F));
            ++i;
        }
    }
    return out;
}

} // namespace saldo::testing
