#include "evaluation/TaxFormWindow.h"

#include "app/Document.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsView.h"
#include "printing/PdfFile.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

namespace saldo::gui {

TaxFormWindow::TaxFormWindow(Document& document, const QString& formName, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , document_(document)
    , formName_(formName)
{
    busy_ = new QLabel(QStringLiteral("wird berechnet…"), this);
    busy_->setEnabled(false);

    heading_ = new QLabel(this);
    heading_->setObjectName(QStringLiteral("heading"));
    QFont headingFont = heading_->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading_->setFont(headingFont);

    formModel_ = new FormTableModel(this);
    formView_ = new QTableView(this);
    formView_->setObjectName(QStringLiteral("form"));
    formView_->setModel(formModel_);
    formView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    formView_->setSelectionMode(QAbstractItemView::SingleSelection);
    formView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    formView_->setWordWrap(true);
    formView_->setShowGrid(false);
    formView_->verticalHeader()->hide();
    notes_ = new QLabel(this);
    notes_->setObjectName(QStringLiteral("notes"));
    notes_->setWordWrap(true);
    notes_->setTextFormat(Qt::PlainText);
    notes_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    lists_ = new QTabWidget(this);
    lists_->setObjectName(QStringLiteral("lists"));

    copy_ = new QPushButton(QStringLiteral("&Kopieren"), this);
    copy_->setObjectName(QStringLiteral("kopieren"));
    copy_->setToolTip(QStringLiteral("Die Tabelle tabulatorgetrennt in die Zwischenablage legen"));
    connect(copy_, &QPushButton::clicked, this, &TaxFormWindow::kopieren);
    pdf_ = new QPushButton(QStringLiteral("Als &PDF sichern…"), this);
    pdf_->setObjectName(QStringLiteral("alsPdfSichern"));
    connect(pdf_, &QPushButton::clicked, this, &TaxFormWindow::alsPdfSichern);

    auto* close = new QAction(this);
    close->setShortcuts({ QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::Key_Escape) });
    connect(close, &QAction::triggered, this, &QWidget::close);
    addAction(close);

    const auto updateTitle
        = [this] { setWindowTitle(QStringLiteral("%1 – %2").arg(formName_, document_.displayName())); };
    connect(&document_, &Document::filePathChanged, this, updateTitle);
    updateTitle();
}

void TaxFormWindow::setWorker(LedgerWorker* worker)
{
    worker_ = worker;
    connect(worker_, &LedgerWorker::started, busy_, &QWidget::show);
}

void TaxFormWindow::addList(ListedItemsView* list, bool printed)
{
    list->setTitleShown(false);
    lists_->addTab(list, list->titleWithCount());
    connect(list, &ListedItemsView::titleChanged, lists_,
        [this, list](const QString& title) { lists_->setTabText(lists_->indexOf(list), title); });
    connect(list, &ListedItemsView::entryActivated, this, [this](std::size_t top) {
        const EinnahmeList& evaluated = worker_->snapshot();
        if (top < evaluated.size())
            emit entryActivated(evaluated[top]);
    });
    if (printed)
        printed_ << list;
}

QHBoxLayout* TaxFormWindow::chooserRow(QLabel* label, std::initializer_list<QWidget*> choosers)
{
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    for (QWidget* chooser : choosers)
        row->addWidget(chooser);
    row->addSpacing(12);
    row->addWidget(busy_);
    row->addStretch();
    return row;
}

QHBoxLayout* TaxFormWindow::buttonRow(const QString& hint)
{
    auto* text = new QLabel(hint, this);
    text->setWordWrap(true);
    text->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->addWidget(text, 1);
    row->addWidget(copy_);
    row->addWidget(pdf_);
    return row;
}

QString TaxFormWindow::pdfSubtitle() const
{
    return QStringLiteral("%1, erstellt am %2")
        .arg(document_.displayName(), QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
}

void TaxFormWindow::kopieren()
{
    QApplication::clipboard()->setText(formModel_->tabSeparated());
}

bool TaxFormWindow::alsPdfSichern()
{
    const QString folder = document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).path();
    return PdfFile::saveWithDialog(this, QDir(folder).filePath(pdfFileName()), [this] {
        FormPdf::Page page;
        page.title = heading_->text();
        page.subtitle = pdfSubtitle();
        page.form = formModel_;
        page.notes = notes_->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const ListedItemsView* list : printed_)
            if (lists_->isTabVisible(lists_->indexOf(list)))
                page.lists << FormPdf::List { list->title(), list->model() };
        page.footer = QStringLiteral("Saldo sendet nichts an das Finanzamt: die Werte sind in ELSTER einzutragen.");
        return FormPdf::render(page);
    });
}

} // namespace saldo::gui
