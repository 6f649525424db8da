#pragma once

#include "core/support/TestSupport.h"
#include "model/Einnahme.h"
#include "platform/Diagnostics.h"
#include "platform/NotificationCenter.h"
#include "platform/Sound.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace saldo::gui::testing {

// Records every line handed to a hook while it lives: `install` sets the hook
// and returns the one it replaces (the sound player, the diagnostic sink).
template <auto install>
class HookRecorder {
public:
    HookRecorder()
        : previous_(install([this](const std::string& line) { lines.push_back(line); }))
    {
    }
    ~HookRecorder() { install(previous_); }
    HookRecorder(const HookRecorder&) = delete;
    HookRecorder& operator=(const HookRecorder&) = delete;

    std::vector<std::string> lines;

private:
    std::function<void(const std::string&)> previous_;
};
using SoundRecorder = HookRecorder<&setSoundPlayer>;
using DiagnosticRecorder = HookRecorder<&setDiagnosticSink>;

// Collects Qt's warnings (those of QAbstractItemModelTester among them) while it lives.
class QtWarningRecorder {
public:
    QtWarningRecorder()
    {
        current() = this;
        previous_ = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type != QtDebugMsg && type != QtInfoMsg && current())
                current()->warnings << text;
        });
    }
    ~QtWarningRecorder()
    {
        qInstallMessageHandler(previous_);
        current() = nullptr;
    }
    QtWarningRecorder(const QtWarningRecorder&) = delete;
    QtWarningRecorder& operator=(const QtWarningRecorder&) = delete;

    QStringList warnings;

private:
    static QtWarningRecorder*& current()
    {
        static QtWarningRecorder* recorder = nullptr;
        return recorder;
    }
    QtMessageHandler previous_ = nullptr;
};

// How often a notification is posted between construction and count().
class PostCounter {
public:
    explicit PostCounter(const char* name)
        : name_(name)
        , start_(NotificationCenter::defaultCenter().postCount(name))
    {
    }
    std::uint64_t count() const { return NotificationCenter::defaultCenter().postCount(name_) - start_; }

private:
    std::string name_;
    std::uint64_t start_;
};

// Entries named as given, gross 10, 20, 30, ... at 19 %.
inline EinnahmeList namedEntries(const std::vector<std::string>& names)
{
    EinnahmeList entries;
    float brutto = 10.0f;
    for (const auto& name : names) {
        entries.push_back(Einnahme::make(name, "", brutto, 19.0f));
        brutto += 10.0f;
    }
    return entries;
}

using ::saldo::testing::Names;
using ::saldo::testing::namesOf;

} // namespace saldo::gui::testing
