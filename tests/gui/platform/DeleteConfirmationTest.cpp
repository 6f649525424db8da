#include "platform/DeleteConfirmation.h"
#include "entrylist/EntryLists.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

namespace saldo::gui {
namespace {

TEST(DeleteConfirmationTest, AsksCriticallyWithOkFirstAndTheCountedNoun)
{
    auto [box, ok] = DeleteConfirmation::create(nullptr, QString::fromStdString(EntryLists::deleteConfirmationText(3)));
    EXPECT_EQ(box->icon(), QMessageBox::Critical);
    EXPECT_EQ(box->text(), QStringLiteral("Moechten Sie 3 Eintraege loeschen?"));
    EXPECT_TRUE(box->informativeText().isEmpty());
    const QList<QAbstractButton*> buttons = box->buttons();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(box->buttonRole(buttons[0]), QMessageBox::AcceptRole);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("OK"));
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Abbrechen"));
    EXPECT_EQ(box->defaultButton(), ok);
}

} // namespace
} // namespace saldo::gui
