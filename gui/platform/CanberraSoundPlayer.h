#pragma once

#include "platform/Sound.h"

#include <string>

namespace saldo::gui {

// Makes the program's system sounds heard: "Basso" as the freedesktop sound
// "dialog-error", "Ping" as "message", played through libcanberra. Without
// libcanberra, or once the sound system turned out unusable, it beeps
// instead; a sound the theme lacks is skipped silently. install() makes it the process's sound player.
class CanberraSoundPlayer {
public:
    CanberraSoundPlayer();
    ~CanberraSoundPlayer();
    CanberraSoundPlayer(const CanberraSoundPlayer&) = delete;
    CanberraSoundPlayer& operator=(const CanberraSoundPlayer&) = delete;

    // The freedesktop event id of a sound name, or "" for an unknown name.
    static std::string eventIdFor(const std::string& name);

    void play(const std::string& name);

    // Installs this player through saldo::setSoundPlayer (the object must
    // outlive its use) and answers the previous player.
    SoundPlayer install();

private:
    void* context_ = nullptr;
};

}  // namespace saldo::gui
