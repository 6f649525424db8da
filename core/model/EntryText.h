#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace saldo {

// One text field of an entry, in one word: a pointer to the text. The text is
// either the field's own (made by a setter or a constructor, freed with the
// field) or shared and immutable: the empty text and the two kinds "Einnahme"
// and "Ausgabe", which live as long as the process, or a text a ledger reader
// keeps for all the entries it read (see TextPool), so that a category or a
// kind repeated a million times is held once. Whoever makes a field from a
// borrowed text keeps that text alive as long as the field.
//
// Changing a field never touches a shared text, and a copy of a field always
// owns its text, so entries that share texts can be read on one thread while
// other entries are changed on another. A setter changes a text the field owns
// in place, so a reference to it stays valid, as a reference to a string
// member would.
class EntryText {
public:
    EntryText() noexcept
        : bits_(emptyBits())
    {
    }
    explicit EntryText(std::string value);
    // A field that refers to `text` without owning it.
    static EntryText borrowed(const std::string& text) noexcept
    {
        EntryText field;
        field.bits_ = reinterpret_cast<std::uintptr_t>(&text);
        return field;
    }

    EntryText(const EntryText& other);
    EntryText& operator=(const EntryText& other);
    EntryText(EntryText&& other) noexcept
        : bits_(std::exchange(other.bits_, emptyBits()))
    {
    }
    EntryText& operator=(EntryText&& other) noexcept
    {
        std::swap(bits_, other.bits_);
        return *this;
    }
    ~EntryText()
    {
        if (bits_ & kOwned)
            destroy();
    }

    const std::string& get() const noexcept { return *reinterpret_cast<const std::string*>(bits_ & ~kOwned); }
    void set(std::string value);

    // A text that is never destroyed, for the shared constants.
    union Constant {
        constexpr explicit Constant(const char* text)
            : value(text)
        {
        }
        ~Constant() { }
        const std::string value;
    };

private:
    static constexpr std::uintptr_t kOwned = 1;
    static std::uintptr_t emptyBits() noexcept { return reinterpret_cast<std::uintptr_t>(&kEmpty.value); }
    // The shared constant equal to `value`, or null.
    static const std::string* knownText(const std::string& value) noexcept;
    void destroy() noexcept;

    static const Constant kEmpty;

    std::uintptr_t bits_;
};

} // namespace saldo
