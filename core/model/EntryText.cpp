#include "model/EntryText.h"

#include <utility>

namespace saldo {

namespace {

// The kinds every entry may share, never destroyed (entries held by static
// lists may still read them while the process ends). GCC makes them at compile
// time; other compilers before main.
const EntryText::Constant einnahme { "Einnahme" };
const EntryText::Constant ausgabe { "Ausgabe" };

} // namespace

const EntryText::Constant EntryText::kEmpty { "" };

namespace {

std::uintptr_t ownedBits(std::string value)
{
    return reinterpret_cast<std::uintptr_t>(new std::string(std::move(value))) | 1;
}

} // namespace

const std::string* EntryText::knownText(const std::string& value) noexcept
{
    if (value.empty())
        return &kEmpty.value;
    if (value == einnahme.value)
        return &einnahme.value;
    if (value == ausgabe.value)
        return &ausgabe.value;
    return nullptr;
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
