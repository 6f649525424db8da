#include "model/EntryText.h"

#include <utility>

namespace saldo {

namespace {

// The texts every entry may share, made once and never freed (entries held
// by static lists may still read them while the process ends).
struct KnownTexts {
    const std::string empty;
    const std::string einnahme { "Einnahme" };
    const std::string ausgabe { "Ausgabe" };
};

const KnownTexts& known()
{
    static const KnownTexts* const texts = new KnownTexts;
    return *texts;
}

// The shared text equal to `value`, or null.
const std::string* knownText(const std::string& value)
{
    const KnownTexts& k = known();
    if (value.empty())
        return &k.empty;
    if (value == k.einnahme)
        return &k.einnahme;
    if (value == k.ausgabe)
        return &k.ausgabe;
    return nullptr;
}

std::uintptr_t ownedBits(std::string value)
{
    return reinterpret_cast<std::uintptr_t>(new std::string(std::move(value))) | 1;
}

} // namespace

EntryText::EntryText() noexcept
    : bits_(reinterpret_cast<std::uintptr_t>(&known().empty))
{
}

EntryText::EntryText(std::string value)
{
    if (const std::string* text = knownText(value))
        bits_ = reinterpret_cast<std::uintptr_t>(text);
    else
        bits_ = ownedBits(std::move(value));
}

EntryText::EntryText(const EntryText& other)
    : EntryText(other.get())
{
}

EntryText& EntryText::operator=(const EntryText& other)
{
    if (this != &other)
        set(other.get());
    return *this;
}

EntryText::EntryText(EntryText&& other) noexcept
    : bits_(std::exchange(other.bits_, reinterpret_cast<std::uintptr_t>(&known().empty)))
{
}

EntryText& EntryText::operator=(EntryText&& other) noexcept
{
    if (this != &other) {
        if (bits_ & kOwned)
            destroy();
        bits_ = std::exchange(other.bits_, reinterpret_cast<std::uintptr_t>(&known().empty));
    }
    return *this;
}

void EntryText::set(std::string value)
{
    if (bits_ & kOwned) {
        *reinterpret_cast<std::string*>(bits_ & ~kOwned) = std::move(value);
        return;
    }
    if (const std::string* text = knownText(value))
        bits_ = reinterpret_cast<std::uintptr_t>(text);
    else
        bits_ = ownedBits(std::move(value));
}

void EntryText::destroy() noexcept
{
    delete reinterpret_cast<std::string*>(bits_ & ~kOwned);
}

} // namespace saldo
