#include "app/ShortcutList.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <set>

namespace saldo::gui {

namespace {

QString keysOf(const QAction* action)
{
    QStringList keys;
    for (const QKeySequence& shortcut : action->shortcuts())
        if (!shortcut.isEmpty())
            keys << shortcut.toString(QKeySequence::NativeText);
    return keys.join(QStringLiteral(", "));
}

void collect(const QMenu* menu, const QString& group, QList<ShortcutList::Row>& rows, std::set<const QAction*>& seen)
{
    for (const QAction* action : menu->actions()) {
        if (action->isSeparator())
            continue;
        seen.insert(action);
        if (const QMenu* submenu = action->menu())
            collect(submenu, group, rows, seen);
        else if (const QString keys = keysOf(action); !keys.isEmpty())
            rows.push_back({ group, ShortcutList::plainTitle(action->text()), keys });
    }
}

} // namespace

QString ShortcutList::plainTitle(const QString& title)
{
    QString plain;
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title[i] == QLatin1Char('&') && i + 1 < title.size())
            ++i;
        plain += title[i];
    }
    if (plain.endsWith(QChar(0x2026)))
        plain.chop(1);
    return plain;
}

QList<ShortcutList::Row> ShortcutList::of(const QMainWindow& window)
{
    QList<Row> rows;
    std::set<const QAction*> seen;
    if (const QMenuBar* bar = window.menuBar()) {
        for (const QAction* entry : bar->actions())
            if (const QMenu* menu = entry->menu())
                collect(menu, plainTitle(menu->title()), rows, seen);
    }
    for (const QAction* action : window.findChildren<QAction*>()) {
        const QString keys = keysOf(action);
        if (!seen.insert(action).second || keys.isEmpty() || action->text().isEmpty())
            continue;
        rows.push_back({ QString::fromLatin1(kOtherGroup), plainTitle(action->text()), keys });
    }
    return rows;
}

} // namespace saldo::gui
