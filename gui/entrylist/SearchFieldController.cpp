#include "entrylist/SearchFieldController.h"

#include "entrylist/SearchMenu.h"

#include <QAction>
#include <QEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

namespace saldo::gui {
namespace {

QString fromStd(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// A magnifying glass with a small arrow: the field's search menu.
QIcon searchMenuIcon(const QColor& colour)
{
    const qreal ratio = 2.0;
    QPixmap pixmap(QSize(22, 16) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.6));
    painter.drawEllipse(QRectF(2.5, 2.5, 8.0, 8.0));
    painter.setPen(QPen(colour, 2.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(9.5, 9.5), QPointF(13.0, 13.0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    const QPointF arrow[] = { QPointF(15.0, 7.0), QPointF(21.0, 7.0), QPointF(18.0, 10.5) };
    painter.drawPolygon(arrow, 3);
    return QIcon(pixmap);
}

} // namespace

SearchFieldController::SearchFieldController(QWidget* parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("searchFieldController"));
    field_ = new QLineEdit(parent);
    field_->setObjectName(QStringLiteral("searchField"));
    field_->setClearButtonEnabled(true);
    field_->installEventFilter(this);

    buildMenu();
    menuAction_
        = field_->addAction(searchMenuIcon(field_->palette().color(QPalette::Text)), QLineEdit::LeadingPosition);
    menuAction_->setObjectName(QStringLiteral("searchMenuAction"));
    menuAction_->setToolTip(QStringLiteral("Suchen nach"));
    connect(menuAction_, &QAction::triggered, this, &SearchFieldController::popUpSearchMenu);

    findAction_ = new QAction(QStringLiteral("Suchen"), parent);
    findAction_->setObjectName(QStringLiteral("findAction"));
    findAction_->setShortcut(QKeySequence::Find);
    findAction_->setShortcutContext(Qt::WindowShortcut);
    parent->addAction(findAction_);
    connect(findAction_, &QAction::triggered, this, [this] {
        field_->setFocus(Qt::ShortcutFocusReason);
        field_->selectAll();
    });

    // The clear button and Escape empty the field through setText/clear,
    // which sends textChanged as typing does.
    connect(field_, &QLineEdit::textChanged, this, &SearchFieldController::searchFieldTextChanged);
}

void SearchFieldController::buildMenu()
{
    menu_ = new QMenu(field_);
    menu_->setObjectName(QStringLiteral("searchMenu"));
    menu_->setTitle(fromStd(SearchMenu::title()));
    QAction* initial = nullptr;
    const auto addModeItem = [this, &initial](QMenu* menu, const SearchMenu::Item& item) {
        QAction* action = menu->addAction(fromStd(item.title));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, action] { changeSearchFieldItem(action); });
        if (!initial && item.title == SearchMenu::initialMode())
            initial = action;
    };
    for (const SearchMenu::Item& item : SearchMenu::items()) {
        if (item.submenu.empty()) {
            if (item.choosesMode)
                addModeItem(menu_, item);
            else
                menu_->addAction(fromStd(item.title));
            continue;
        }
        // An item that holds a submenu only opens it.
        QMenu* submenu = menu_->addMenu(fromStd(item.title));
        for (const SearchMenu::Item& subitem : item.submenu)
            addModeItem(submenu, subitem);
    }
    // The check mark shows the mode that the placeholder records.
    const auto markMode = [this](QMenu* menu) {
        for (QAction* action : menu->actions())
            if (action->isCheckable())
                action->setChecked(action->text() == field_->placeholderText());
    };
    connect(menu_, &QMenu::aboutToShow, this, [this, markMode] { markMode(menu_); });
    for (QAction* action : menu_->actions())
        if (QMenu* submenu = action->menu())
            connect(submenu, &QMenu::aboutToShow, this, [markMode, submenu] { markMode(submenu); });
    if (initial)
        changeSearchFieldItem(initial);
}

QString SearchFieldController::mode() const
{
    return field_->placeholderText();
}

void SearchFieldController::changeSearchFieldItem(QAction* sender)
{
    field_->setPlaceholderText(sender ? sender->text() : QString());
}

void SearchFieldController::popUpSearchMenu()
{
    menu_->popup(field_->mapToGlobal(QPoint(0, field_->height())));
}

void SearchFieldController::searchFieldTextChanged(const QString& text)
{
    const QByteArray mode = field_->placeholderText().toUtf8();
    const QByteArray typed = text.toUtf8();
    const SearchOutcome outcome = SearchOutcome::decide(std::string_view(mode.constData(), std::size_t(mode.size())),
        std::string_view(typed.constData(), std::size_t(typed.size())));
    if (outcome.kind() == SearchOutcome::Kind::NoChange || !handler_)
        return;
    handler_(outcome);
}

bool SearchFieldController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == field_ && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape
        && static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier) {
        field_->clear();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace saldo::gui
