#include "platform/DateField.h"

#include "model/DateText.h"
#include "platform/Sound.h"

#include <QAction>
#include <QCalendarWidget>
#include <QFrame>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace saldo::gui {
namespace {

Calendar::LocalDateTime toLocal(const QDateTime& value)
{
    const QDate date = value.date();
    const QTime time = value.time();
    return { { date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second() }, time.msec() };
}

// A small calendar sheet in the text colour: a frame, its top bar and a grid of days.
QIcon calendarIcon(const QColor& ink)
{
    QPixmap sheet(16, 16);
    sheet.fill(Qt::transparent);
    QPainter painter(&sheet);
    painter.setPen(ink);
    painter.drawRect(1, 2, 13, 12);
    painter.fillRect(1, 2, 14, 3, ink);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            painter.fillRect(3 + 3 * column, 7 + 2 * row, 2, 1, ink);
    return QIcon(sheet);
}

QDateTime fromLocal(const Calendar::LocalDateTime& local)
{
    const Calendar::Fields& f = local.fields;
    return QDateTime(QDate(f.year, f.month, f.day), QTime(f.hour, f.minute, f.second, local.millisecond));
}

} // namespace

DateField::DateField(QWidget* parent)
    : QLineEdit(parent)
{
    setToolTip(QStringLiteral("Tag zuerst: 15.03.2026, 15.3.26 oder 15032026; die Uhrzeit bleibt"));
    QAction* open = addAction(calendarIcon(palette().color(QPalette::Text)), QLineEdit::TrailingPosition);
    open->setToolTip(QStringLiteral("Kalender"));
    connect(open, &QAction::triggered, this, &DateField::showCalendar);
    setDateTime(QDateTime());
}

DateField::~DateField() = default;

QSize DateField::sizeHint() const
{
    const QString widest = QStringLiteral("00.00.0000 00:00");
    const QSize base = QLineEdit::sizeHint();
    // The text, the calendar button (as wide as the field is high) and the frame's room.
    return { fontMetrics().horizontalAdvance(widest) + base.height() + 12, base.height() };
}

void DateField::setDateTime(const QDateTime& value)
{
    value_ = value.isValid() ? value : QDateTime::currentDateTime();
    showValue();
}

void DateField::showValue()
{
    setText(QString::fromStdString(DateText::format(toLocal(value_))));
    setModified(false);
}

DateField::Outcome DateField::commit()
{
    if (!isModified())
        return Outcome::Unchanged;
    const auto typed = DateText::parse(text().toStdString(), toLocal(value_));
    if (!typed) {
        showValue();
        playSound("Basso");
        return Outcome::Refused;
    }
    const QDateTime value = fromLocal(*typed);
    const bool changed = value != value_;
    value_ = value;
    showValue();
    return changed ? Outcome::Changed : Outcome::Unchanged;
}

void DateField::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Down && (event->modifiers() & Qt::AltModifier)) || event->key() == Qt::Key_F4) {
        showCalendar();
        return;
    }
    // A date is typed day first: the first key replaces the whole shown
    // date, unless the user picked a part of it to replace.
    const QString typed = event->text();
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    const bool partSelected = hasSelectedText() && selectedText() != text();
    if (!isModified() && plain && !typed.isEmpty() && typed.front().isPrint() && !partSelected && !isReadOnly())
        selectAll();
    QLineEdit::keyPressEvent(event);
}

void DateField::showCalendar()
{
    if (isReadOnly())
        return;
    if (!popup_) {
        // A child of the field, so that the focus stays within it (a cell's
        // editor stays open while its calendar is shown).
        popup_ = new QFrame(this, Qt::Popup);
        popup_->setFrameShape(QFrame::StyledPanel);
        calendar_ = new QCalendarWidget(popup_);
        calendar_->setObjectName(QStringLiteral("kalender"));
        // Month and day names in German, as the rest of the program speaks.
        calendar_->setLocale(QLocale(QLocale::German, QLocale::Germany));
        calendar_->setFirstDayOfWeek(Qt::Monday);
        calendar_->setGridVisible(true);
        auto* layout = new QVBoxLayout(popup_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(calendar_);
        connect(calendar_, &QCalendarWidget::clicked, this, &DateField::choose);
        connect(calendar_, &QCalendarWidget::activated, this, &DateField::choose);
    }
    // A date typed and not yet taken is where the calendar opens.
    commit();
    calendar_->setSelectedDate(value_.date());
    popup_->adjustSize();
    QPoint at = mapToGlobal(QPoint(0, height()));
    if (const QScreen* shown = screen()) {
        const QRect area = shown->availableGeometry();
        if (at.y() + popup_->height() > area.bottom())
            at.setY(mapToGlobal(QPoint(0, 0)).y() - popup_->height());
        at.setX(std::clamp(at.x(), area.left(), std::max(area.left(), area.right() - popup_->width())));
    }
    popup_->move(at);
    popup_->show();
    calendar_->setFocus(Qt::PopupFocusReason);
}

void DateField::choose(QDate day)
{
    if (popup_)
        popup_->hide();
    setFocus(Qt::PopupFocusReason);
    const bool changed = day.isValid() && day != value_.date();
    if (changed) {
        value_.setDate(day);
        showValue();
    }
    emit dateChosen(changed);
}

} // namespace saldo::gui
