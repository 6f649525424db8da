#include "platform/Sound.h"

namespace saldo {
namespace {
SoundPlayer& installedPlayer()
{
    static SoundPlayer player;
    return player;
}
}  // namespace

void playSound(const std::string& name)
{
    if (auto& player = installedPlayer())
        player(name);
}

SoundPlayer setSoundPlayer(SoundPlayer player)
{
    SoundPlayer previous = std::move(installedPlayer());
    installedPlayer() = std::move(player);
    return previous;
}

}  // namespace saldo
