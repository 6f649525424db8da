#pragma once

#include <QDateTime>
#include <QLineEdit>
#include <QPointer>

class QCalendarWidget;
class QFrame;

namespace saldo::gui {

// The date field of the tables and the forms: a line edit that shows a date
// and time as "15.03.2026 14:30" and takes what a
// German user types, as DateText reads it: "15.03.2026", "15.3.26",
// "15032026", day first and the time of day kept. The first key typed into
// the untouched field starts a new date, wherever the cursor stood, unless
// the user selected a part of the text to replace. The typed text counts
// when commit() is called (the owner calls it on Return and when the field
// is left); a text that cannot be read shows the date again and plays
// "Basso". A calendar pop-up (the button at the right, Alt+Down or F4) picks
// a day and keeps the time; dateChosen() tells of that choice.
class DateField : public QLineEdit {
    Q_OBJECT
public:
    enum class Outcome { Unchanged, Changed, Refused };

    explicit DateField(QWidget* parent = nullptr);
    ~DateField() override;

    QDateTime dateTime() const { return value_; }
    // Shows a date and time as not typed by the user; an invalid one shows the current moment.
    void setDateTime(const QDateTime& value);

    // Takes the typed text over: Changed when it named another date and
    // time, Refused when it could not be read.
    Outcome commit();

    void showCalendar();
    QCalendarWidget* calendar() const { return calendar_; }

    // Wide enough for the whole date and time and the calendar button.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    // The user picked a day in the calendar pop-up (`changed`: another day
    // than the one shown).
    void dateChosen(bool changed);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showValue();
    void choose(QDate day);

    QDateTime value_;
    QPointer<QFrame> popup_;
    QCalendarWidget* calendar_ = nullptr;
};

} // namespace saldo::gui
