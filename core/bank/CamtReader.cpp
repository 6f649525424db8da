#include "bank/CamtReader.h"

#include "bank/BankText.h"
#include "bank/BankValueText.h"
#include "bank/StatementError.h"
#include "model/Utf16.h"

#include <pugixml.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace saldo {

namespace {

[[noreturn]] void refuse(const std::string& why)
{
    throw StatementError(why);
}

std::string_view localName(const pugi::xml_node& node)
{
    std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

pugi::xml_node child(const pugi::xml_node& parent, std::string_view name)
{
    if (!parent)
        return {};
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling())
        if (node.type() == pugi::node_element && localName(node) == name)
            return node;
    return {};
}

// The element at a path of local names below `from`.
pugi::xml_node path(pugi::xml_node from, std::initializer_list<std::string_view> names)
{
    for (const std::string_view name : names)
        from = child(from, name);
    return from;
}

template <typename Visit>
void eachChild(const pugi::xml_node& parent, std::string_view name, Visit visit)
{
    if (!parent)
        return;
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling())
        if (node.type() == pugi::node_element && localName(node) == name)
            visit(node);
}

std::string text(const pugi::xml_node& node)
{
    if (!node)
        return {};
    std::string out;
    for (pugi::xml_node part = node.first_child(); part; part = part.next_sibling())
        if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata)
            out += part.value();
    return BankText::tidy(out);
}

// Walks the whole tree once without recursion: the depth is capped and every
// text must be UTF-8 (the encoding camt prescribes).
void checkTree(const pugi::xml_document& document)
{
    int depth = 0;
    pugi::xml_node node = document.first_child();
    while (node) {
        if (node.type() == pugi::node_doctype)
            refuse("Die Datei enthaelt eine DOCTYPE-Deklaration; ein Kontoauszug hat keine.");
        if ((node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) && !Utf16::isValidUtf8(node.value()))
            refuse("Der Kontoauszug enthaelt Text, der kein UTF-8 ist.");
        if (node.first_child()) {
            if (++depth > CamtReader::kMaxDepth)
                refuse("Der Kontoauszug ist tiefer verschachtelt als erlaubt.");
            node = node.first_child();
            continue;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (node)
            node = node.next_sibling();
    }
}

BankDate dateOf(const pugi::xml_node& holder, const char* what)
{
    std::string value = text(child(holder, "Dt"));
    if (value.empty())
        value = text(child(holder, "DtTm")).substr(0, 10);
    const std::optional<BankDate> date = BankValueText::date(value, "yyyy-MM-dd");
    if (!date)
        refuse(std::string("Der Kontoauszug enthaelt ein ungueltiges ") + what + " (\"" + value.substr(0, 40) + "\").");
    return *date;
}

void checkCurrency(const std::string& currency)
{
    if (!currency.empty() && currency != "EUR")
        refuse("Der Kontoauszug ist in " + currency.substr(0, 3) + " gefuehrt; Saldo liest nur Kontoauszuege in Euro.");
}

// The amount of an element <Amt Ccy="EUR">12.34</Amt>, in cents (never negative).
std::int64_t amountOf(const pugi::xml_node& amount)
{
    checkCurrency(amount.attribute("Ccy").value());
    const std::string value = text(amount);
    const std::optional<std::int64_t> cents = BankValueText::cents(value, '.', 0);
    if (!cents || *cents < 0 || value.find_first_of("+-") != std::string::npos)
        refuse("Der Kontoauszug enthaelt einen ungueltigen Betrag (\"" + value.substr(0, 40) + "\").");
    return *cents;
}

bool isCredit(const pugi::xml_node& holder, bool otherwise)
{
    const std::string indicator = text(child(holder, "CdtDbtInd"));
    if (indicator.empty())
        return otherwise;
    if (indicator != "CRDT" && indicator != "DBIT")
        refuse("Der Kontoauszug enthaelt eine unbekannte Buchungsrichtung (\"" + indicator.substr(0, 20) + "\").");
    return indicator == "CRDT";
}

std::string reference(const std::string& value)
{
    return value == "NOTPROVIDED" ? std::string() : value;
}

class Reader {
public:
    explicit Reader(Statement& out)
        : out_(out)
    {
    }

    void statement(const pugi::xml_node& stmt, int number)
    {
        checkCurrency(text(path(stmt, { "Acct", "Ccy" })));
        statement_ = number;
        eachChild(stmt, "Ntry", [this](const pugi::xml_node& entry) { this->entry(entry); });
    }

private:
    void entry(const pugi::xml_node& entry)
    {
        if (out_.bookings.size() >= Statement::kMaxBookings)
            refuse("Der Kontoauszug hat mehr als " + std::to_string(Statement::kMaxBookings) + " Buchungen.");
        const pugi::xml_node amount = child(entry, "Amt");
        if (!amount)
            refuse("Eine Buchung des Kontoauszugs hat keinen Betrag.");
        BankBooking booking;
        booking.statement = statement_;
        const std::int64_t cents = amountOf(amount);
        const bool reversal = text(child(entry, "RvslInd")) == "true";
        const bool credit = isCredit(entry, true);
        if (!child(entry, "CdtDbtInd"))
            refuse("Eine Buchung des Kontoauszugs hat keine Buchungsrichtung.");
        const pugi::xml_node status = child(entry, "Sts");
        std::string code = text(child(status, "Cd"));
        if (code.empty())
            code = text(status);
        if (code == "BOOK")
            booking.status = BankBooking::Status::Booked;
        else if (code == "PDNG")
            booking.status = BankBooking::Status::Pending;
        else if (code == "INFO" || !code.empty())
            booking.status = BankBooking::Status::Info;
        else
            refuse("Eine Buchung des Kontoauszugs hat keinen Status.");
        const pugi::xml_node booked = child(entry, "BookgDt");
        const pugi::xml_node valued = child(entry, "ValDt");
        if (booked)
            booking.bookingDate = dateOf(booked, "Buchungsdatum");
        if (valued)
            booking.valueDate = dateOf(valued, "Valutadatum");
        if (!booked) {
            if (booking.status == BankBooking::Status::Booked || !valued)
                refuse("Eine Buchung des Kontoauszugs hat kein Buchungsdatum.");
            booking.bookingDate = booking.valueDate;
        }
        booking.reference = reference(text(child(entry, "AcctSvcrRef")));
        booking.bookingText = text(child(entry, "AddtlNtryInf"));

        std::vector<pugi::xml_node> details;
        eachChild(entry, "NtryDtls", [&details](const pugi::xml_node& group) {
            eachChild(group, "TxDtls", [&details](const pugi::xml_node& detail) { details.push_back(detail); });
        });
        const auto signedCents = [&](std::int64_t magnitude, bool in) { return (in != reversal) ? magnitude : -magnitude; };
        bool batch = details.size() > 1;
        for (const pugi::xml_node& detail : details)
            batch = batch && detailAmount(detail);
        if (!batch) {
            booking.cents = signedCents(cents, credit);
            if (!details.empty())
                describe(booking, details.front(), details.size());
            out_.bookings.push_back(std::move(booking));
            return;
        }
        for (const pugi::xml_node& detail : details) {
            BankBooking part = booking;
            part.cents = signedCents(amountOf(detailAmount(detail)), isCredit(detail, credit));
            describe(part, detail, 1);
            out_.bookings.push_back(std::move(part));
        }
    }

    static pugi::xml_node detailAmount(const pugi::xml_node& detail)
    {
        const pugi::xml_node amount = path(detail, { "AmtDtls", "TxAmt", "Amt" });
        return amount ? amount : child(detail, "Amt");
    }

    // The counterparty, the remittance text and the references of one detail.
    static void describe(BankBooking& booking, const pugi::xml_node& detail, std::size_t siblings)
    {
        const bool in = booking.cents >= 0;
        const pugi::xml_node parties = child(detail, "RltdPties");
        const auto party = [&](const char* role, const char* account) {
            const pugi::xml_node who = child(parties, role);
            std::string name = text(child(who, "Nm"));
            if (name.empty())
                name = text(path(who, { "Pty", "Nm" }));
            return std::make_pair(name, text(path(parties, { account, "Id", "IBAN" })));
        };
        auto [name, iban] = in ? party("Dbtr", "DbtrAcct") : party("Cdtr", "CdtrAcct");
        if (name.empty() && iban.empty())
            std::tie(name, iban) = in ? party("Cdtr", "CdtrAcct") : party("Dbtr", "DbtrAcct");
        booking.partner = std::move(name);
        booking.iban = std::move(iban);

        std::string lines;
        eachChild(child(detail, "RmtInf"), "Ustrd", [&lines](const pugi::xml_node& line) {
            const std::string value = text(line);
            if (!value.empty())
                lines += (lines.empty() ? "" : " ") + value;
        });
        if (lines.empty())
            lines = text(path(detail, { "RmtInf", "Strd", "CdtrRefInf", "Ref" }));
        if (lines.empty())
            lines = text(child(detail, "AddtlTxInf"));
        if (lines.empty() && siblings > 1)
            lines = "Sammelbuchung (" + std::to_string(siblings) + " Posten)";
        booking.text = std::move(lines);
        if (const std::string endToEnd = reference(text(path(detail, { "Refs", "EndToEndId" }))); !endToEnd.empty())
            booking.reference = endToEnd;
        else if (booking.reference.empty())
            booking.reference = reference(text(path(detail, { "Refs", "AcctSvcrRef" })));
        if (booking.bookingText.empty())
            booking.bookingText = text(child(detail, "AddtlTxInf"));
    }

    Statement& out_;
    int statement_ = 0;
};

} // namespace

bool CamtReader::looksLikeXml(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '<';
}

Statement CamtReader::read(std::string_view bytes, int firstStatement)
{
    pugi::xml_document document;
    // No parse_doctype-free shortcut: the document type is kept as a node so
    // that checkTree refuses it; entities are never declared, so none expand.
    const unsigned options = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_doctype;
    const pugi::xml_parse_result parsed = document.load_buffer(bytes.data(), bytes.size(), options, pugi::encoding_utf8);
    if (!parsed)
        refuse("Die Datei ist kein vollstaendiges XML (beschaedigt oder abgeschnitten).");
    checkTree(document);

    // The namespace names the version: xmlns on a plain root, xmlns:p on a root p:Document.
    const pugi::xml_node root = document.document_element();
    const std::string_view rootName = root.name();
    const std::size_t colon = rootName.find(':');
    const std::string xmlns
        = colon == std::string_view::npos ? std::string("xmlns") : "xmlns:" + std::string(rootName.substr(0, colon));
    const std::string space = root.attribute(xmlns.c_str()).value();
    static constexpr std::string_view kSpace = "urn:iso:std:iso:20022:tech:xsd:camt.053.001.";
    const std::string_view version = std::string_view(space).substr(std::min(space.size(), kSpace.size()));
    const pugi::xml_node message = child(root, "BkToCstmrStmt");
    if (localName(root) != "Document" || !message || !space.starts_with(kSpace) || version.size() != 2
        || version < "02" || version > "13")
        refuse("Die XML-Datei ist kein Kontoauszug im Format camt.053.");

    Statement statement;
    statement.format = "camt.053.001." + std::string(version);
    Reader reader(statement);
    int number = firstStatement;
    eachChild(message, "Stmt", [&](const pugi::xml_node& stmt) { reader.statement(stmt, number++); });
    statement.statementCount = number - firstStatement;
    return statement;
}

} // namespace saldo
