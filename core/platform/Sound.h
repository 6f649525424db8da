#pragma once

#include <functional>
#include <string>

namespace saldo {

// System sounds by name ("Basso" for a refused input, "Ping" for the income
// limit). The core only names the sound; the installed player makes it heard.
// Without a player the call does nothing, and a player skips a sound it lacks.
using SoundPlayer = std::function<void(const std::string& name)>;

void playSound(const std::string& name);

// Installs the player and returns the previous one (tests restore it).
SoundPlayer setSoundPlayer(SoundPlayer player);

}  // namespace saldo
