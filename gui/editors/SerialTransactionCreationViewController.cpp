#include "editors/SerialTransactionCreationViewController.h"

#include "app/Document.h"
#include "editors/RecurringSeries.h"

#include <QComboBox>
#include <QFontMetricsF>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <limits>
#include <string>

namespace saldo::gui {

namespace {

// The distance of tab stops at which every line's value starts at the same
// stop: a label and its tabs ("Art: \t\t\t", "Kategorie: \t") reach the stop
// of the line with the most tabs when each label is at least as wide as the
// stops its tabs skip. Nothing when the labels are too unequal for that.
std::optional<qreal> alignedTabStop(const QString& text, const QFontMetricsF& metrics)
{
    struct Label {
        qreal width;
        int tabs;
    };
    std::vector<Label> labels;
    int stop = 0;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const qsizetype first = line.indexOf(QLatin1Char('\t'));
        if (first < 0)
            continue;
        int tabs = 0;
        while (first + tabs < line.size() && line[first + tabs] == QLatin1Char('\t'))
            ++tabs;
        labels.push_back({ metrics.horizontalAdvance(line.left(first)), tabs });
        stop = std::max(stop, tabs);
    }
    // A label of width w followed by n tabs ends at stop k = `stop` when
    // (k - n) * T <= w < (k - n + 1) * T.
    qreal lower = 0.0;
    qreal upper = std::numeric_limits<qreal>::max();
    for (const Label& label : labels) {
        lower = std::max(lower, label.width / (stop - label.tabs + 1));
        if (stop > label.tabs)
            upper = std::min(upper, label.width / (stop - label.tabs));
    }
    if (labels.empty() || lower + 1.0 > upper)
        return std::nullopt;
    return lower + 1.0;
}

} // namespace

SerialTransactionCreationViewController::SerialTransactionCreationViewController(
    Document& document, std::optional<std::size_t> selectedIndex, QWidget* parent)
    : QDialog(parent)
    , document_(document)
{
    setObjectName(QStringLiteral("SerialTransactionCreationViewController"));
    setWindowTitle(QStringLiteral("Serienbuchung"));
    setWindowModality(Qt::WindowModal);

    if (selectedIndex && *selectedIndex < document.einnahmen().size()) {
        transactions_ = document.einnahmen();
        selectedIndex_ = selectedIndex;
        transactionDescriptionText_
            = QString::fromStdString(RecurringSeries::descriptionText(*transactions_[*selectedIndex_]));
    }

    // The description as plain text, its tab stops set so that the values
    // stand in one column.
    transactionDescriptionLabel_ = new QPlainTextEdit(this);
    transactionDescriptionLabel_->setObjectName(QStringLiteral("transactionDescriptionLabel"));
    transactionDescriptionLabel_->setPlainText(transactionDescriptionText_);
    transactionDescriptionLabel_->setReadOnly(true);
    transactionDescriptionLabel_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    transactionDescriptionLabel_->setFocusPolicy(Qt::ClickFocus);
    transactionDescriptionLabel_->setFrameShape(QFrame::NoFrame);
    transactionDescriptionLabel_->setLineWrapMode(QPlainTextEdit::NoWrap);
    transactionDescriptionLabel_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    transactionDescriptionLabel_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    transactionDescriptionLabel_->viewport()->setAutoFillBackground(false);
    const QFontMetricsF metrics(transactionDescriptionLabel_->font());
    if (const auto tabStop = alignedTabStop(transactionDescriptionText_, metrics))
        transactionDescriptionLabel_->setTabStopDistance(*tabStop);
    const qreal margin = transactionDescriptionLabel_->document()->documentMargin();
    transactionDescriptionLabel_->setFixedHeight(
        qCeil(metrics.lineSpacing() * (transactionDescriptionText_.count(QLatin1Char('\n')) + 1) + 2 * margin) + 2);
    transactionDescriptionLabel_->setMinimumWidth(380);

    whenInMonthSelection_ = new QComboBox(this);
    whenInMonthSelection_->setObjectName(QStringLiteral("whenInMonthSelection"));
    whenInMonthSelection_->addItems({ QStringLiteral("am 1. des Monats"), QStringLiteral("am 15. des Monats") });
    intervallSelection_ = new QComboBox(this);
    intervallSelection_->setObjectName(QStringLiteral("intervallSelection"));
    for (std::string_view title : RecurringSeries::kIntervalTitles)
        intervallSelection_->addItem(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    // Nothing is chosen until the user chooses: the pop-ups ask for it. A
    // choice in either pop-up computes the series.
    for (QComboBox* popUp : { whenInMonthSelection_, intervallSelection_ }) {
        popUp->setPlaceholderText(QStringLiteral("Bitte waehlen"));
        popUp->setCurrentIndex(-1);
        connect(popUp, &QComboBox::activated, this, &SerialTransactionCreationViewController::popupSelectionChanged);
    }

    cancel_ = new QPushButton(QStringLiteral("Abbrechen"), this);
    cancel_->setObjectName(QStringLiteral("cancel"));
    cancel_->setAutoDefault(false);
    ok_ = new QPushButton(QStringLiteral("OK"), this);
    ok_->setObjectName(QStringLiteral("ok"));
    ok_->setDefault(true);
    ok_->setEnabled(false);
    for (QPushButton* button : { cancel_, ok_ })
        connect(button, &QPushButton::clicked, this,
            [this, button] { dismissTransactionViewControllerWithSender(button); });

    auto* choices = new QFormLayout;
    auto* dayLabel = new QLabel(QStringLiteral("&Tag"), this);
    dayLabel->setBuddy(whenInMonthSelection_);
    auto* intervalLabel = new QLabel(QStringLiteral("&Intervall"), this);
    intervalLabel->setBuddy(intervallSelection_);
    choices->addRow(dayLabel, whenInMonthSelection_);
    choices->addRow(intervalLabel, intervallSelection_);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel_);
    buttons->addWidget(ok_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(transactionDescriptionLabel_);
    layout->addSpacing(8);
    layout->addLayout(choices);
    layout->addStretch(1);
    layout->addLayout(buttons);
}

void SerialTransactionCreationViewController::popupSelectionChanged()
{
    if (!selectedIndex_)
        return;
    std::optional<std::string> title;
    if (intervallSelection_->currentIndex() >= 0)
        title = intervallSelection_->currentText().toStdString();
    newlyCreatedTransactions_
        = RecurringSeries::compute(*transactions_[*selectedIndex_], whenInMonthSelection_->currentIndex(), title);
    // "OK" commits what both pop-ups show, so it waits for both choices.
    ok_->setEnabled(!newlyCreatedTransactions_.empty() && whenInMonthSelection_->currentIndex() >= 0);
}

void SerialTransactionCreationViewController::dismissTransactionViewControllerWithSender(QAbstractButton* sender)
{
    const bool ok = sender && sender->objectName() == QLatin1String("ok");
    if (ok && selectedIndex_ && !newlyCreatedTransactions_.empty())
        document_.appendSeries(*selectedIndex_, newlyCreatedTransactions_);
    if (ok)
        accept();
    else
        reject();
}

} // namespace saldo::gui
