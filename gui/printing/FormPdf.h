#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace saldo::gui {

class FormTableModel;
class ListedItemsModel;

// A tax form window's figures on A4, as a PDF: a title and a line below it,
// the form's table (the widest column takes the room that is left and
// wraps), notes, then the lists below the form, sharing the room left on
// the page, each with a line saying how many more Saldo lists (PdfFile saves
// it). A form fits one page as a rule; a longer one goes on over the next,
// and the lists start a page of their own when too little room is left for
// them under the form.
class FormPdf {
public:
    struct List {
        QString title;
        const ListedItemsModel* items = nullptr;
    };
    struct Page {
        QString title;
        QString subtitle;
        const FormTableModel* form = nullptr;
        QStringList notes;
        QList<List> lists;
        QString footer;
    };

    static QByteArray render(const Page& page);
};

} // namespace saldo::gui
