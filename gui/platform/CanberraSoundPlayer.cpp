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
        const int result = ca_context_play(static_cast<ca_context*>(context_), 0, CA_PROP_EVENT_ID, eventId.c_str(),
            CA_PROP_EVENT_DESCRIPTION, name.c_str(), nullptr);
        // A sound missing from the theme is skipped without a word.
        if (result == CA_SUCCESS || result == CA_ERROR_NOTFOUND)
            return;
        // No usable audio device: do not try (and log) again every time, beep
        // from now on.
        ca_context_destroy(static_cast<ca_context*>(context_));
        context_ = nullptr;
    }
#endif
    QApplication::beep();
}

SoundPlayer CanberraSoundPlayer::install()
{
    return setSoundPlayer([this](const std::string& name) { play(name); });
}

}  // namespace saldo::gui
