#include "platform/CanberraSoundPlayer.h"

#include <QApplication>

#ifdef SALDO_HAVE_CANBERRA
#include <canberra.h>
#endif

namespace saldo::gui {

CanberraSoundPlayer::CanberraSoundPlayer()
{
#ifdef SALDO_HAVE_CANBERRA
    ca_context* context = nullptr;
    if (ca_context_create(&context) == CA_SUCCESS) {
        ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Saldo", nullptr);
        context_ = context;
    }
#endif
}

CanberraSoundPlayer::~CanberraSoundPlayer()
{
#ifdef SALDO_HAVE_CANBERRA
    if (context_)
        ca_context_destroy(static_cast<ca_context*>(context_));
#endif
}

std::string CanberraSoundPlayer::eventIdFor(const std::string& name)
{
    if (name == "Basso")
        return "dialog-error";
    if (name == "Ping")
        return "message";
    return {};
}

void CanberraSoundPlayer::play(const std::string& name)
{
    const std::string eventId = eventIdFor(name);
    if (eventId.empty())
        return;
#ifdef SALDO_HAVE_CANBERRA
    if (context_) {
        // A sound missing from the theme, or no audio device, is not worth a
        // beep or a message: the sound is skipped.
        ca_context_play(static_cast<ca_context*>(context_), 0, CA_PROP_EVENT_ID, eventId.c_str(),
                        CA_PROP_EVENT_DESCRIPTION, name.c_str(), nullptr);
        return;
    }
#endif
    QApplication::beep();
}

SoundPlayer CanberraSoundPlayer::install()
{
    return setSoundPlayer([this](const std::string& name) { play(name); });
}

}  // namespace saldo::gui
